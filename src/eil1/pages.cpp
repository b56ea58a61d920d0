#include "eil1/pages.h"

#include "interface_members.h"

namespace eil1 {

EIL1_DEFINE_SPECIAL_MEMBERS(IOptionPage);
EIL1_DEFINE_SPECIAL_MEMBERS(IWizardPage);
EIL1_DEFINE_SPECIAL_MEMBERS(IWizard);

} // namespace eil1
