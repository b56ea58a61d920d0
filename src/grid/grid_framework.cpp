#include "corr_dialogs2/grid_framework.h"

#include "corr_dialogs2/ui_utils.h"

#include <algorithm>

namespace corr_dialogs2 {

using gridview8::IHeaderItem;

// ---- header_vis_model_t

bool header_vis_model_t::add_item(size_t column)
{
    AddItem(static_cast<int>(column), IHeaderItem::isVisible, 100, IHeaderItem::sdNone);
    return true;
}

bool header_vis_model_t::add_item(size_t column, std::vector<size_t> children)
{
    if (!AddItem(static_cast<int>(column), IHeaderItem::isVisible, 100, IHeaderItem::sdNone))
        return false;
    if (children.empty())
        return true;
    const int weight = 100 / static_cast<int>(children.size());
    for (size_t child : children)
        AddChildItem(static_cast<int>(column), static_cast<int>(child), IHeaderItem::isVisible,
                     weight, IHeaderItem::sdNone);
    return true;
}

// ---- button_helper_t

namespace {

constexpr int button_padding = 10;
constexpr int fallback_line_height = 15;
// What the grid adds to a line for a row of its default height.
constexpr int row_padding = 6;

} // namespace

button_helper_t::button_helper_t() = default;
button_helper_t::button_helper_t(const button_helper_t& other) = default;
button_helper_t& button_helper_t::operator=(const button_helper_t& other) = default;
button_helper_t::~button_helper_t() = default;

int button_helper_t::GetColIndex(int x) const
{
    if (!GetColumnViewModel())
        return -1;
    return column_at(display_position(x));
}

bool button_helper_t::has_button(int) const
{
    return false;
}

bool button_helper_t::on_button_click(int, int, const uicore7::screen_rectangle<int>&)
{
    return false;
}

bool button_helper_t::ProcessButtonDown(int x, int y, int keys, uicore7::MouseButton button, bool*)
{
    if (button != uicore7::mbLeft || (keys & uicore7::ksDoubleClick) || !m_button_enabled)
        return false;
    const int row = GetRowIndex(y);
    const int column = GetColIndex(x);
    if (row < 0 || !has_button(column))
        return false;
    const uicore7::screen_rectangle<int> rect = get_button_rect(row, column);
    if (rect.contains(x, y))
        on_button_click(row, y, rect);
    return false;
}

void button_helper_t::SetRowViewModel(uiframe7::IDiscreteItemViewModel* rows)
{
    m_rows = rows;
}

uiframe7::IDiscreteItemViewModel* button_helper_t::GetRowViewModel() const
{
    if (m_rows)
        return m_rows;
    // Not stored: a copied model would keep pointing at the original.
    return dynamic_cast<uiframe7::IDiscreteItemViewModel*>(const_cast<button_helper_t*>(this));
}

void button_helper_t::SetColumnViewModel(uiframe7::IContinuousItemViewModel* columns)
{
    m_columns = columns;
}

uiframe7::IContinuousItemViewModel* button_helper_t::GetColumnViewModel() const
{
    if (m_columns)
        return m_columns;
    gridview8::CGrid* grid = find_grid();
    return grid ? grid->GetColumnViewModel() : nullptr;
}

int button_helper_t::GetRowIndex(int y) const
{
    const auto* rows = GetRowViewModel();
    return rows ? rows->HitTest(y) : -1;
}

void button_helper_t::set_window(uicore7::ISysWindow* window)
{
    m_window = window;
}

void button_helper_t::enable_button(bool enable)
{
    m_button_enabled = enable;
}

void button_helper_t::set_button_text(const std::wstring& text)
{
    m_button_text = text;
}

int button_helper_t::get_button_width() const
{
    uicore7::IPainter* painter = m_window ? m_window->GetPainter() : nullptr;
    if (!painter)
        return button_padding;
    return painter->GetTextExtent(m_button_text).width + button_padding;
}

uicore7::screen_rectangle<int> button_helper_t::GetRowContentRect(int row) const
{
    const auto* rows = GetRowViewModel();
    const auto* columns = GetColumnViewModel();
    if (!rows || !columns)
        return {};
    const uiframe7::ItemRange vertical = rows->GetItemRange(row);
    const uiframe7::ItemRange horizontal = columns->GetFullRange();
    uicore7::screen_rectangle<int> rect(horizontal.start, vertical.start, horizontal.end,
                                        vertical.end);
    rect.normalize();
    return rect;
}

uicore7::screen_rectangle<int> button_helper_t::get_button_rect(int row, int col) const
{
    uicore7::screen_rectangle<int> rect = GetRowContentRect(row);
    if (const auto* columns = GetColumnViewModel()) {
        const int position = column_position(col);
        if (position >= 0 && position < columns->GetCount()) {
            const uiframe7::ItemRange cell = columns->GetItemRange(position);
            rect.left = std::min(cell.start, cell.end);
            rect.right = std::max(cell.start, cell.end);
        }
    }
    rect.left = std::max(rect.left, rect.right - get_button_width());
    return rect;
}

int button_helper_t::get_line_height() const
{
    if (uicore7::IPainter* painter = m_window ? m_window->GetPainter() : nullptr)
        return painter->GetLineHeight();
    const auto* rows = GetRowViewModel();
    const int row_height = rows ? rows->GetDefaultItemSize() : 0;
    return row_height > row_padding ? row_height - row_padding : fallback_line_height;
}

uicore7::rectangle<double>
button_helper_t::get_text_rect(int col, const uicore7::rectangle<double>& content) const
{
    uicore7::rectangle<double> rect = content;
    if (m_button_enabled && has_button(col))
        rect.right = std::max(rect.left, rect.right - get_button_width() - 2);
    return rect;
}

void button_helper_t::draw_button(uicore7::IPainter* painter,
                                  const uicore7::rectangle<double>& rect)
{
    if (!painter)
        return;
    painter->DrawButton(rect, m_button_text,
                        m_button_enabled ? uicore7::bsNormal : uicore7::bsDisabled);
}

gridview8::CGrid* button_helper_t::find_grid() const
{
    uiframe7::CBaseControl* control =
        m_window ? uiframe7::CBaseControl::FromSysWindow(m_window) : nullptr;
    if (!control || !control->GetRootElement())
        return nullptr;
    for (uiframe7::CVisualElement* child : control->GetRootElement()->GetChildren())
        if (auto* grid = dynamic_cast<gridview8::CGrid*>(child))
            return grid;
    return nullptr;
}

void button_helper_t::refresh_view(int row) const
{
    if (gridview8::CGrid* grid = find_grid()) {
        if (row >= 0)
            grid->RefreshRow(row);
        else
            grid->RefreshAll();
    } else if (m_window) {
        m_window->Refresh();
    }
}

int button_helper_t::display_position(int x) const
{
    const auto* columns = GetColumnViewModel();
    return columns ? columns->HitTest(x) : -1;
}

int button_helper_t::column_at(int position) const
{
    if (position < 0)
        return -1;
    const gridview8::CGrid* grid = find_grid();
    if (const gridview8::IHeaderVisModel* header = grid ? grid->GetHeaderVisModel() : nullptr) {
        const gridview8::IHeaderItem* leaf = header->GetLeaf(position);
        return leaf ? leaf->GetColumn() : -1;
    }
    return position;
}

int button_helper_t::column_position(int col) const
{
    if (col < 0)
        return -1;
    const gridview8::CGrid* grid = find_grid();
    if (const gridview8::IHeaderVisModel* header = grid ? grid->GetHeaderVisModel() : nullptr)
        return header->GetLeafPosition(col);
    return col;
}

int button_helper_t::fit_width(const std::wstring& text, int minimum) const
{
    if (text.empty())
        return minimum;
    uicore7::IPainter* painter = m_window ? m_window->GetPainter() : nullptr;
    // Without a window, an average character width of the usual fonts.
    const int width =
        painter ? painter->GetTextExtent(text).width : 7 * static_cast<int>(text.size());
    return std::max(minimum, width + 16);
}

bool button_helper_t::apply_row_order(const std::vector<int>&)
{
    return false;
}

void button_helper_t::on_rows_reordered(const std::vector<int>&) {}

void button_helper_t::reorder_rows(const std::vector<int>& order)
{
    if (apply_row_order(order))
        on_rows_reordered(order);
}

// ---- tooltips

tooltip_model_t::tooltip_model_t(gridview8::CGrid* grid, button_helper_t* model,
                                 int excluded_column, int button_column)
    : m_grid(grid), m_model(model), m_excluded_column(excluded_column),
      m_button_column(button_column)
{
}

bool tooltip_model_t::HasTooltip(int col) const
{
    return col != m_excluded_column && col != m_button_column;
}

std::wstring tooltip_model_t::GetTooltipText(int row, int col)
{
    if (col != m_button_column || !m_grid || !m_model || !m_model->is_button_enabled() ||
        !m_model->has_button(col))
        return {};
    const uicore7::point<int> mouse = m_grid->GetMousePosition();
    const int mouse_row = m_model->GetRowIndex(mouse.y);
    if (mouse_row < 0 || mouse_row != row)
        return {};
    if (!m_model->get_button_rect(mouse_row, col).contains(mouse.x, mouse.y))
        return {};
    return translate(L"dlg.suppressions.view_button.tooltip");
}

bool no_tooltip_model_t::HasTooltip(int) const
{
    return false;
}

std::wstring no_tooltip_model_t::GetTooltipText(int, int)
{
    return {};
}

} // namespace corr_dialogs2
