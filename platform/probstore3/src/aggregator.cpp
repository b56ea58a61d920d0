#include "probstore3/aggregator.h"

namespace probstore3 {

std::wstring aggregator_t::get_suppfmt_errdef_string(suppfmt3::suppfmt_errdef code)
{
    using namespace suppfmt3;
    switch (code) {
    case se_success:
        return L"The operation completed successfully.";
    case se_cannot_open:
        return L"The suppression file cannot be opened.";
    case se_cannot_read:
        return L"The suppression file cannot be read.";
    case se_not_suppression_file:
        return L"The file is not a suppression file.";
    case se_unsupported_version:
        return L"The suppression file was written by a newer version and cannot be read.";
    case se_parse_error:
        return L"The suppression file contains an error.";
    case se_cannot_create:
        return L"No file can be created in the folder of the suppression file.";
    case se_cannot_write:
        return L"The suppression file cannot be written.";
    case se_cannot_rename:
        return L"The suppression file cannot be replaced.";
    case se_format_not_writable:
        return L"Suppression files can only be written in the current format.";
    case se_empty_rule_set:
        return L"A suppression without rules cannot be saved.";
    case se_no_path:
        return L"The suppression file has no path.";
    case se_no_file:
        return L"There is no suppression file.";
    }
    return L"Unknown suppression file error " + std::to_wstring(static_cast<int>(code)) + L".";
}

} // namespace probstore3
