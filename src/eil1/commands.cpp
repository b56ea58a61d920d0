#include "eil1/commands.h"

#include "interface_members.h"

namespace eil1 {

EIL1_DEFINE_SPECIAL_MEMBERS(ICommands);
EIL1_DEFINE_SPECIAL_MEMBERS(IComboBoxes);

} // namespace eil1
