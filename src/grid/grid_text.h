#pragma once
// What the grid models of the library share: the words they show, the text
// of the locations column, sorting, and the look of choosable cells.
#include "corr_dialogs2/supp_helpers.h"

#include "uicore7/painter.h"

#include <optional>

#include <functional>
#include <string>
#include <vector>

namespace uiframe7 {
class CComboBox;
class IDiscreteItemViewModel;
} // namespace uiframe7

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

// After a model's rows changed: the view takes the new count, or, when the
// count stayed, looks at the rows' sizes again.
void rows_changed(uiframe7::IDiscreteItemViewModel& rows, size_t count);

// Width kept free at the right of a cell that opens a choice.
inline constexpr int drop_down_width = 14;
// A small downward arrow at the right end of rect, in the grey of controls.
void draw_drop_down_arrow(uicore7::IPainter* painter, const uicore7::rectangle<double>& rect);
// The content of a cell with the arrow: rect less the arrow's room.
void leave_room_for_drop_down(uicore7::rectangle<double>& rect);

// The in-cell choice of a value-or-any cell: entry 0 the cell's own value,
// entry 1 the any-value word.
namespace value_or_any {
// Fills combo with the two entries and selects the current one.
void fill(uiframe7::CComboBox& combo, const std::wstring& value, bool active);
// Whether entry item of the choice means the value (true) or any value
// (false); nothing for an entry that is neither.
std::optional<bool> is_value(int item);
} // namespace value_or_any

} // namespace corr_dialogs2::grid_text
