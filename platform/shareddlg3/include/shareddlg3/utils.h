#pragma once
// Small helpers the dialogs share: names that users type, line endings,
// invalid-input marking and window placement.
#include <wx/colour.h>

#include <string>

class wxWindow;

namespace shareddlg3 {

// Characters a file or folder name may not hold: \ / : * ? " < > |
inline constexpr const wchar_t* file_name_disabled_chars = L"\\/:*?\"<>|";
// Characters a path may not hold (separators and the drive colon are fine).
inline constexpr const wchar_t* path_disabled_chars = L"*?\"<>|";

// True when name holds none of chars.
bool check_folder_name_for_chars(const std::wstring& name, const std::wstring& chars);
// name without any of chars.
std::wstring replace_disabled_chars(const std::wstring& text, const std::wstring& chars);
// The tool-tip for a name with a forbidden character: the shared catalogue's
// "restricted_symbols_message" with {symbols} = the characters, blank-separated.
std::wstring get_disabled_tooltip_text(const std::wstring& chars);

// Every line break (CR LF, CR or LF) as the text controls of this platform
// want it: LF here, CR LF on Windows.
std::wstring restore_line_endings(const std::wstring& text);

// Marks a control: its background colour and its tool-tip (a custom
// wxkit1 tool-tip; an empty text removes it).
void set_color_and_tooltip(wxWindow* window, const wxColour& colour, const std::wstring& tooltip);

// Moves a top-level window so that it lies within the work area of the
// display it is on (the nearest one if it is on none), shrinking it when it
// is larger than that area.
void move_to_visible_area(wxWindow* window);

} // namespace shareddlg3
