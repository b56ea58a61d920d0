#pragma once
// What the grid models of the library share: the words they show, the text
// of the locations column, sorting, and the look of choosable cells.
#include "corr_dialogs2/supp_helpers.h"

#include "uicore7/painter.h"

#include <functional>
#include <string>
#include <vector>

namespace corr_dialogs2::grid_text {

// Alignment of captions (centred) and of cells (left, vertically centred).
inline constexpr int caption_align = uicore7::taCenter;
inline constexpr int cell_align = uicore7::taLeftVCenter;

// The word of a wildcard cell: "dlg.suppression_grid.any_value".
std::wstring any_value();

// The locations of a rule: how many frames of its stack it uses, of how
// many ("Frames used: 1 of 4"), or that it matches any stack.
std::wstring frames_used(const rule_ptr& rule);

// Order of rows 0..count-1 by their keys: letters without regard to case,
// digit runs by their numeric value, equal keys in their old order.
std::vector<int> sort_order(int count, const std::function<std::wstring(int)>& key,
                            bool descending);
bool natural_less(const std::wstring& a, const std::wstring& b);

// Width kept free at the right of a cell that opens a choice.
inline constexpr int drop_down_width = 14;
// A small downward arrow at the right end of rect, in the grey of controls.
void draw_drop_down_arrow(uicore7::IPainter* painter, const uicore7::rectangle<double>& rect);

} // namespace corr_dialogs2::grid_text
