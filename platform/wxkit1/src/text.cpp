#include "wxkit1/text.h"

#include <wx/dcscreen.h>
#include <wx/settings.h>
#include <wx/window.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

namespace wxkit1 {
namespace {

using measure_t = std::function<int(const std::wstring&)>;

measure_t make_measure(const wxWindow* window, wxDC* dc)
{
    if (dc)
        return [dc](const std::wstring& s) { return dc->GetTextExtent(s).x; };
    if (window)
        return [window](const std::wstring& s) { return window->GetTextExtent(s).x; };
    auto screen = std::make_shared<wxScreenDC>();
    screen->SetFont(wxSystemSettings::GetFont(wxSYS_DEFAULT_GUI_FONT));
    return [screen](const std::wstring& s) { return screen->GetTextExtent(s).x; };
}

std::vector<std::wstring> split(const std::wstring& text, wchar_t separator)
{
    std::vector<std::wstring> parts;
    size_t start = 0;
    for (;;) {
        const size_t end = text.find(separator, start);
        parts.push_back(text.substr(start, end == std::wstring::npos ? std::wstring::npos : end - start));
        if (end == std::wstring::npos)
            return parts;
        start = end + 1;
    }
}

// Longest prefix of word (at least one character) that fits width.
size_t fitting_prefix(const std::wstring& word, int width, const measure_t& measure)
{
    size_t lo = 1, hi = word.size();
    while (lo < hi) {
        const size_t mid = (lo + hi + 1) / 2;
        if (measure(word.substr(0, mid)) <= width)
            lo = mid;
        else
            hi = mid - 1;
    }
    return lo;
}

void wrap_paragraph(const std::wstring& paragraph, int width, const measure_t& measure,
                    std::vector<std::wstring>& lines)
{
    std::wstring line;
    bool any_word = false;
    for (std::wstring word : split(paragraph, L' ')) {
        if (word.empty())
            continue;
        any_word = true;
        if (!line.empty()) {
            const std::wstring candidate = line + L" " + word;
            if (measure(candidate) <= width) {
                line = candidate;
                continue;
            }
            lines.push_back(line);
            line.clear();
        }
        while (measure(word) > width && word.size() > 1) {
            const size_t n = fitting_prefix(word, width, measure);
            lines.push_back(word.substr(0, n));
            word.erase(0, n);
        }
        line = word;
    }
    if (!line.empty() || !any_word)
        lines.push_back(line);
}

} // namespace

std::wstring wrap_text(const std::wstring& text, int width, const wxWindow* window, int& out_width,
                       unsigned max_lines, wxDC* dc)
{
    const measure_t measure = make_measure(window, dc);
    std::vector<std::wstring> lines;
    for (const std::wstring& paragraph : split(text, L'\n')) {
        if (width <= 0)
            lines.push_back(paragraph);
        else
            wrap_paragraph(paragraph, width, measure, lines);
    }

    if (lines.size() > max_lines) {
        lines.resize(max_lines);
        if (!lines.empty()) {
            std::wstring& last = lines.back();
            while (!last.empty() && width > 0 && measure(last + L"...") > width)
                last.pop_back();
            last += L"...";
        }
    }

    std::wstring result;
    out_width = 0;
    for (size_t i = 0; i < lines.size(); ++i) {
        out_width = std::max(out_width, measure(lines[i]));
        if (i)
            result += L'\n';
        result += lines[i];
    }
    return result;
}

} // namespace wxkit1
