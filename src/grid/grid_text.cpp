#include "grid_text.h"

#include "corr_dialogs2/ui_utils.h"
#include "uiframe7/combo_box.h"
#include "uiframe7/item_view_model.h"

#include <wx/settings.h>

#include <algorithm>
#include <cwctype>
#include <numeric>

namespace corr_dialogs2::grid_text {

std::wstring any_value()
{
    return translate(L"dlg.suppression_grid.any_value");
}

std::wstring frames_used(const rule_ptr& rule)
{
    if (!rule)
        return {};
    const auto item = rule->get_stack_item();
    if (item && !item->is_active())
        return translate(L"dlg.suppression_grid.any_stack");
    // A rule of the previous format has one location of its own: one frame.
    const auto stack = item ? rule->get_stack(false) : rule->get_stack(true);
    if (!stack)
        return translate(L"dlg.suppression_grid.any_stack");
    platkit::generic::varg_list args;
    args.add(L"used", supp_helpers::get_active_frames_count(stack));
    args.add(L"total", stack->stack_size());
    return translate(L"dlg.suppression_grid.frames_used", args);
}

bool natural_less(const std::wstring& a, const std::wstring& b)
{
    size_t i = 0;
    size_t j = 0;
    while (i < a.size() && j < b.size()) {
        if (std::iswdigit(a[i]) && std::iswdigit(b[j])) {
            // Compare the digit runs as numbers: skip leading zeros, then the
            // longer run is larger, then the first differing digit decides.
            while (i < a.size() && a[i] == L'0')
                ++i;
            while (j < b.size() && b[j] == L'0')
                ++j;
            size_t ei = i;
            size_t ej = j;
            while (ei < a.size() && std::iswdigit(a[ei]))
                ++ei;
            while (ej < b.size() && std::iswdigit(b[ej]))
                ++ej;
            if (ei - i != ej - j)
                return ei - i < ej - j;
            for (; i < ei; ++i, ++j)
                if (a[i] != b[j])
                    return a[i] < b[j];
            continue;
        }
        const wint_t ca = std::towlower(a[i]);
        const wint_t cb = std::towlower(b[j]);
        if (ca != cb)
            return ca < cb;
        ++i;
        ++j;
    }
    return a.size() - i < b.size() - j;
}

std::vector<int> sort_order(int count, const std::function<std::wstring(int)>& key, bool descending)
{
    std::vector<std::wstring> keys;
    keys.reserve(static_cast<size_t>(std::max(0, count)));
    for (int row = 0; row < count; ++row)
        keys.push_back(key(row));
    std::vector<int> order(keys.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int x, int y) {
        const auto& kx = keys[static_cast<size_t>(x)];
        const auto& ky = keys[static_cast<size_t>(y)];
        return descending ? natural_less(ky, kx) : natural_less(kx, ky);
    });
    return order;
}

void draw_drop_down_arrow(uicore7::IPainter* painter, const uicore7::rectangle<double>& rect)
{
    if (!painter || rect.width() < drop_down_width)
        return;
    const double cx = rect.right - drop_down_width / 2.0 - 1;
    const double cy = (rect.top + rect.bottom) / 2.0;
    painter->SetFillColor(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNSHADOW));
    painter->FillPolygon({{cx - 4, cy - 2}, {cx + 4, cy - 2}, {cx, cy + 3}});
}

void rows_changed(uiframe7::IDiscreteItemViewModel& rows, size_t count)
{
    const int n = static_cast<int>(count);
    if (rows.GetCount() != n)
        rows.SetCount(n);
    else
        rows.UpdateModelState();
}

void leave_room_for_drop_down(uicore7::rectangle<double>& rect)
{
    rect.right = std::max(rect.left, rect.right - drop_down_width);
}

namespace value_or_any {
namespace {
constexpr int value_entry = 0;
constexpr int any_entry = 1;
} // namespace

void fill(uiframe7::CComboBox& combo, const std::wstring& value, bool active)
{
    combo.Clear();
    combo.AddString(value);
    combo.AddString(any_value());
    combo.SetSelection(active ? value_entry : any_entry);
}

std::optional<bool> is_value(int item)
{
    if (item == value_entry)
        return true;
    if (item == any_entry)
        return false;
    return std::nullopt;
}

} // namespace value_or_any

} // namespace corr_dialogs2::grid_text
