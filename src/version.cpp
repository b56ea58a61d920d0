#include "corr_dialogs2/version.h"

namespace corr_dialogs2 {

const char* library_version() { return "2.0.0"; }

} // namespace corr_dialogs2
