#include "corr_dialogs2/supp_name_validation.h"

#include "corr_dialogs2/ui_utils.h"

#include "basekit2/path.h"
#include "resdir2/result_directory_manager.h"
#include "settings2/catalog.h"
#include "shareddlg3/resources.h"
#include "shareddlg3/utils.h"

#include <cwctype>

namespace corr_dialogs2 {

namespace {

// Windows refuses a path of MAX_PATH (260) characters, the terminator included.
constexpr size_t max_full_path = 260;

std::wstring upper(std::wstring text)
{
    for (auto& c : text)
        c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
    return text;
}

// A tool-tip of the shared dialogs' catalogue; its visible fall-back when
// the catalogue or the key is missing.
std::wstring shared_text(const std::wstring& key)
{
    const auto catalog = settings2::getMessageCatalog(shareddlg3::shared_resource_set);
    if (catalog && catalog->has_message(key))
        return catalog->message(key).as_ustring({});
    return shareddlg3::translate_shared(key);
}

file_name_problem_t check_name(const std::wstring& name, const std::wstring& forbidden)
{
    if (resdir2::ResultDirectoryManager::isReservedDirectoryName(upper(name)))
        return file_name_problem_t::reserved;
    if (name == L"." || name == L"..")
        return file_name_problem_t::dots;
    if (name.empty())
        return file_name_problem_t::empty;
    if (!shareddlg3::check_folder_name_for_chars(name, forbidden))
        return file_name_problem_t::bad_chars;
    return file_name_problem_t::none;
}

bool ends_in_separator(const std::wstring& text)
{
    return !text.empty() && (text.back() == L'/' || text.back() == L'\\');
}

} // namespace

std::wstring trim_text(const std::wstring& text)
{
    size_t first = 0;
    size_t last = text.size();
    while (first < last && std::iswspace(static_cast<wint_t>(text[first])))
        ++first;
    while (last > first && std::iswspace(static_cast<wint_t>(text[last - 1])))
        --last;
    return text.substr(first, last - first);
}

std::wstring full_suppression_path(const std::wstring& folder, const std::wstring& text)
{
    return basekit2::path_t(folder).join(text).str();
}

file_name_problem_t check_suppression_file_name(const std::wstring& text, const std::wstring& folder)
{
    const std::wstring name = trim_text(text);
    const basekit2::path_t path(name);
    file_name_problem_t problem;
    if (path.is_absolute()) {
        problem = check_name(path.leaf(), shareddlg3::file_name_disabled_chars);
        if (problem == file_name_problem_t::none &&
            !shareddlg3::check_folder_name_for_chars(path.parent().str(), shareddlg3::path_disabled_chars))
            problem = file_name_problem_t::bad_chars;
    } else {
        problem = check_name(name, shareddlg3::file_name_disabled_chars);
    }
    if (problem != file_name_problem_t::none)
        return problem;
    const std::wstring full = full_suppression_path(folder, name);
    if (full.size() >= max_full_path)
        return file_name_problem_t::too_long;
    // "/some/folder/" would become a file named only by its extension.
    if (ends_in_separator(name) || basekit2::path_t(full).is_directory())
        return file_name_problem_t::folder;
    if (folder.empty())
        return file_name_problem_t::no_folder;
    return file_name_problem_t::none;
}

std::wstring get_file_name_tooltip(file_name_problem_t problem)
{
    switch (problem) {
    case file_name_problem_t::reserved:
        return shared_text(L"reserved_filename");
    case file_name_problem_t::dots:
        return shared_text(L"dots_filename");
    case file_name_problem_t::empty:
        return shared_text(L"filename_empty");
    case file_name_problem_t::bad_chars:
        return shareddlg3::get_disabled_tooltip_text(shareddlg3::file_name_disabled_chars);
    case file_name_problem_t::too_long:
        return shared_text(L"filename_bad_lenght");
    case file_name_problem_t::folder:
        return translate(L"dlg.suppressions.new.filename_is_folder");
    case file_name_problem_t::none:
    case file_name_problem_t::no_folder:
        break;
    }
    return {};
}

bool is_rule_set_name_valid(const std::wstring& name) { return !trim_text(name).empty(); }

std::wstring get_rule_set_name_tooltip() { return shared_text(L"filename_empty"); }

bool is_create_ok_enabled(file_name_problem_t file_problem, bool has_checked_rules, bool name_valid)
{
    return file_problem == file_name_problem_t::none && has_checked_rules && name_valid;
}

} // namespace corr_dialogs2
