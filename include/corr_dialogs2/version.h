#pragma once
#include "corr_dialogs2/export.h"

namespace corr_dialogs2 {

CORR_DIALOGS2_API const char* library_version();

} // namespace corr_dialogs2
