#pragma once
// The checks of the create-suppression dialog on what the user types, as
// functions of values so that they can be tested without a window. The
// dialog wires them to its controls.
#include "corr_dialogs2/export.h"

#include <string>

namespace corr_dialogs2 {

// What is wrong with a suppression file name, in the order the checks run:
// the first one that fails is reported.
enum class file_name_problem_t {
    none,
    reserved,  // a device name the operating system reserves (any letter case)
    dots,      // "." or ".."
    empty,     // nothing but blanks
    bad_chars, // one of \ / : * ? " < > |
    too_long,  // the full path has 260 characters or more
    folder,    // it ends in a path separator or names an existing folder
    no_folder, // the result has no suppressions folder to put it in
};

// Leading and trailing white space removed (classified by the current locale).
CORR_DIALOGS2_API std::wstring trim_text(const std::wstring& text);

// The path a name stands for: an absolute path as it is, anything else in
// the suppressions folder.
CORR_DIALOGS2_API std::wstring full_suppression_path(const std::wstring& folder, const std::wstring& text);

// Checks the text of the file field (trimmed here) against the result's
// suppressions folder. A relative text is a file name: reserved names,
// dots, emptiness and every forbidden character are checked on all of it.
// An absolute path (an existing file, or one chosen with Browse) is checked
// by its last component, and its folders only for the characters no path may
// hold. The full path is too long at 260 characters (the Windows limit:
// exactly 260 is already refused). A path that ends in a separator, or
// whose full path is an existing folder, names no file.
CORR_DIALOGS2_API file_name_problem_t check_suppression_file_name(const std::wstring& text,
                                                                  const std::wstring& folder);

// The tool-tip that says why a file name is refused; empty for none.
// Reserved, dots, empty and too long come from the "shareddlg" catalogue;
// forbidden characters from shareddlg3::get_disabled_tooltip_text; a
// folder from this library's catalogue.
CORR_DIALOGS2_API std::wstring get_file_name_tooltip(file_name_problem_t problem);

// A rule-set name is valid when it is not blank.
CORR_DIALOGS2_API bool is_rule_set_name_valid(const std::wstring& name);
// Its tool-tip when it is blank: the same text as for an empty file name.
CORR_DIALOGS2_API std::wstring get_rule_set_name_tooltip();

// OK is enabled exactly when the file name is valid, at least one rule is
// checked and the rule-set name is not blank.
CORR_DIALOGS2_API bool is_create_ok_enabled(file_name_problem_t file_problem, bool has_checked_rules,
                                            bool name_valid);

} // namespace corr_dialogs2
