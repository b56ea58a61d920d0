#include "shareddlg3/utils.h"

#include "shareddlg3/resources.h"
#include "wxkit1/tooltip.h"

#include <wx/display.h>
#include <wx/window.h>

#include <algorithm>

namespace shareddlg3 {

bool check_folder_name_for_chars(const std::wstring& name, const std::wstring& chars)
{
    return chars.empty() || name.find_first_of(chars) == std::wstring::npos;
}

std::wstring replace_disabled_chars(const std::wstring& text, const std::wstring& chars)
{
    std::wstring out;
    out.reserve(text.size());
    for (wchar_t c : text)
        if (chars.find(c) == std::wstring::npos)
            out += c;
    return out;
}

std::wstring get_disabled_tooltip_text(const std::wstring& chars)
{
    std::wstring symbols;
    for (wchar_t c : chars) {
        if (!symbols.empty())
            symbols += L' ';
        symbols += c;
    }
    return translate_shared(L"restricted_symbols_message", {{L"symbols", symbols}});
}

std::wstring restore_line_endings(const std::wstring& text)
{
#ifdef _WIN32
    const std::wstring eol = L"\r\n";
#else
    const std::wstring eol = L"\n";
#endif
    std::wstring out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == L'\r') {
            if (i + 1 < text.size() && text[i + 1] == L'\n')
                ++i;
            out += eol;
        } else if (text[i] == L'\n') {
            out += eol;
        } else {
            out += text[i];
        }
    }
    return out;
}

void set_color_and_tooltip(wxWindow* window, const wxColour& colour, const std::wstring& tooltip)
{
    if (!window)
        return;
    window->SetBackgroundColour(colour);
    window->Refresh();
    wxkit1::SetTooltip(window, tooltip);
}

void move_to_visible_area(wxWindow* window)
{
    if (!window)
        return;
    int index = wxDisplay::GetFromWindow(window);
    if (index == wxNOT_FOUND)
        index = wxDisplay::GetFromPoint(window->GetScreenPosition());
    const wxRect area = wxDisplay(index == wxNOT_FOUND ? 0u : unsigned(index)).GetClientArea();
    wxRect rect = window->GetScreenRect();
    rect.width = std::min(rect.width, area.width);
    rect.height = std::min(rect.height, area.height);
    rect.x = std::clamp(rect.x, area.x, area.GetRight() - rect.width + 1);
    rect.y = std::clamp(rect.y, area.y, area.GetBottom() - rect.height + 1);
    if (rect != window->GetScreenRect())
        window->SetSize(rect);
}

} // namespace shareddlg3
