#include "eil1/message_bridge.h"

#include "interface_members.h"

namespace eil1 {

EIL1_DEFINE_SPECIAL_MEMBERS(IMessageBridge);
EIL1_DEFINE_SPECIAL_MEMBERS(IMessageBridgeEx);

} // namespace eil1
