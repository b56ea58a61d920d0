#pragma once
// Breaking text into lines that fit a width in pixels.
#include <climits>
#include <string>

class wxDC;
class wxWindow;

namespace wxkit1 {

// Wraps text so that no line is wider than width pixels, measured with dc
// when given, else with the window's font, else with the normal GUI font.
// Lines break at blanks (runs of blanks collapse to one); a word wider than
// the width is broken between characters. Existing line breaks are kept.
// With more than max_lines lines, the last kept line ends in "...".
// out_width receives the width of the widest resulting line. A width of 0 or
// less wraps nothing.
std::wstring wrap_text(const std::wstring& text, int width, const wxWindow* window, int& out_width,
                       unsigned max_lines = UINT_MAX, wxDC* dc = nullptr);

} // namespace wxkit1
