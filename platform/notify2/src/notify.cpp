#include "notify2/messenger.h"
#include "notify2/progress.h"

namespace notify2 {

// Out of line so that the type information of the interfaces lives in one
// module and dynamic_cast works across shared libraries.
IProgress::~IProgress() = default;
IMessenger::~IMessenger() = default;

} // namespace notify2
