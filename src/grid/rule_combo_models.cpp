#include "corr_dialogs2/rule_combo_models.h"

#include "corr_dialogs2/ui_utils.h"
#include "grid_text.h"

#include <algorithm>

namespace corr_dialogs2 {

using namespace suppfmt3;

// ---- combo_aspect_model_t

combo_aspect_model_t::combo_aspect_model_t() = default;
combo_aspect_model_t::combo_aspect_model_t(const combo_aspect_model_t& other) = default;
combo_aspect_model_t& combo_aspect_model_t::operator=(const combo_aspect_model_t& other) = default;
combo_aspect_model_t::~combo_aspect_model_t() = default;

const combo_aspect_model_t::column_table_t& combo_aspect_model_t::get_columns()
{
    static const column_table_t columns = {
        {aspect_kind, sdt_description},
        {frames_kind, sdt_none},
        {stack_kind, sdt_call_stack},
    };
    return columns;
}

void combo_aspect_model_t::init(boost::shared_ptr<probstore3::suppression_rule_set_t> rule_set)
{
    init(rule_set ? rule_set->get_rules() : std::vector<rule_ptr>());
}

void combo_aspect_model_t::init(std::vector<rule_ptr> rules)
{
    m_rules = std::move(rules);
    rows_changed();
}

void combo_aspect_model_t::rows_changed()
{
    grid_text::rows_changed(*this, m_rules.size());
}

bool combo_aspect_model_t::apply_row_order(const std::vector<int>& order)
{
    if (order.size() != m_rules.size())
        return false;
    std::vector<rule_ptr> sorted;
    sorted.reserve(m_rules.size());
    for (int old : order)
        sorted.push_back(m_rules[static_cast<size_t>(old)]);
    m_rules.swap(sorted);
    return true;
}

rule_ptr combo_aspect_model_t::get_rule(int row) const
{
    if (row < 0 || row >= get_rule_count())
        return {};
    return m_rules[static_cast<size_t>(row)];
}

suppfmt_datatype combo_aspect_model_t::get_column_datatype(int col) const
{
    const auto& columns = get_columns();
    if (col < 0 || col >= static_cast<int>(columns.size()))
        return sdt_none;
    return columns[static_cast<size_t>(col)].second;
}

bool combo_aspect_model_t::is_aspect_column(int col) const
{
    const auto& columns = get_columns();
    return col >= 0 && col < static_cast<int>(columns.size()) &&
           columns[static_cast<size_t>(col)].first == aspect_kind;
}

std::wstring combo_aspect_model_t::get_rule_value(int row, int col) const
{
    const rule_ptr rule = get_rule(row);
    const auto type = get_column_datatype(col);
    if (!rule || type == sdt_none)
        return {};
    return rule->get_field_value(type);
}

std::wstring combo_aspect_model_t::get_stack_size(int row) const
{
    const rule_ptr rule = get_rule(row);
    if (!rule)
        return {};
    const auto stack = rule->get_stack(false);
    return std::to_wstring(stack ? stack->stack_size() : 0);
}

bool combo_aspect_model_t::is_active(int row, int col) const
{
    const rule_ptr rule = get_rule(row);
    const auto& columns = get_columns();
    if (!rule || col < 0 || col >= static_cast<int>(columns.size()))
        return false;
    const auto& column = columns[static_cast<size_t>(col)];
    return column.first != aspect_kind || rule->is_item_active(column.second);
}

bool combo_aspect_model_t::has_combobox(int row, int col) const
{
    // The combo box shows the rule's state, so inactive aspects are edited
    // too; a rule without the aspect has no value to offer.
    if (!is_aspect_column(col) || has_button(col))
        return false;
    const rule_ptr rule = get_rule(row);
    return rule && rule->is_item_available(get_column_datatype(col));
}

void combo_aspect_model_t::init_header_vis_model(header_vis_model_t& header)
{
    for (size_t column = 0; column < get_columns().size(); ++column)
        header.add_item(column);
}

bool combo_aspect_model_t::has_button(int column) const
{
    return column == stack_column;
}

bool combo_aspect_model_t::on_button_click(int row, int, const uicore7::screen_rectangle<int>&)
{
    if (!get_rule(row))
        return false;
    m_button_clicked(row);
    return true;
}

int combo_aspect_model_t::GetRowCount() const
{
    return get_rule_count();
}

int combo_aspect_model_t::GetColumnCount() const
{
    return static_cast<int>(get_columns().size());
}

int combo_aspect_model_t::GetColumnImageIndex(int) const
{
    return -1;
}

int combo_aspect_model_t::GetColumnTextAlign(int) const
{
    return grid_text::caption_align;
}

int combo_aspect_model_t::GetCellImageIndex(int, int) const
{
    return -1;
}

int combo_aspect_model_t::GetCellTextAlign(int, int) const
{
    return grid_text::cell_align;
}

std::wstring combo_aspect_model_t::GetColumnCaption(int col) const
{
    switch (col) {
    case description_column:
        return translate(L"dlg.suppression_grid.description");
    case frames_column:
        return translate(L"dlg.suppression_grid.frames");
    case stack_column:
        return translate(L"dlg.suppression_grid.stack");
    case edit_stack_column:
        return translate(L"dlg.suppressions.edit_stack.title");
    default:
        return {};
    }
}

std::wstring combo_aspect_model_t::GetCellText(int row, int col) const
{
    const rule_ptr rule = get_rule(row);
    const auto& columns = get_columns();
    if (!rule || col < 0 || col >= static_cast<int>(columns.size()))
        return {};
    switch (columns[static_cast<size_t>(col)].first) {
    case aspect_kind:
        return is_active(row, col) ? get_rule_value(row, col) : grid_text::any_value();
    case frames_kind:
        return get_stack_size(row);
    case stack_kind:
        return create_rule_description(rule, {});
    }
    return {};
}

void combo_aspect_model_t::OnSortColumn(int col, gridview8::IHeaderItem::SortingDirection direction)
{
    if (col < 0 || col >= GetColumnCount() || direction == gridview8::IHeaderItem::sdNone)
        return;
    reorder_rows(grid_text::sort_order(
        GetRowCount(), [&](int row) { return GetCellText(row, col); },
        direction == gridview8::IHeaderItem::sdDescending));
}

bool combo_aspect_model_t::GetAttr(int row, int col, gridview8::CCellAttr& attr) const
{
    if (!is_aspect_column(col) || !get_rule(row) || is_active(row, col))
        return false;
    attr.grayed = true;
    return true;
}

bool combo_aspect_model_t::OnDrawCell(uicore7::IPainter* painter, int row, int col,
                                      const uicore7::rectangle<double>& rect)
{
    if (!painter || !is_button_enabled() || !has_button(col) || !get_rule(row))
        return false;
    const double left = std::max(rect.left, rect.right - get_button_width());
    draw_button(painter, {left, rect.top + 1, rect.right - 1, rect.bottom - 2});
    return false; // the code location is drawn beside the button
}

void combo_aspect_model_t::GetContentRect(int, int col, uicore7::rectangle<double>& rect) const
{
    rect = get_text_rect(col, rect);
}

// ---- editable_combo_aspect_model_t

editable_combo_aspect_model_t::editable_combo_aspect_model_t() = default;
editable_combo_aspect_model_t::editable_combo_aspect_model_t(
    const editable_combo_aspect_model_t& other) = default;
editable_combo_aspect_model_t&
editable_combo_aspect_model_t::operator=(const editable_combo_aspect_model_t& other) = default;

editable_combo_aspect_model_t::~editable_combo_aspect_model_t()
{
    // Before this object stops being a combo-box listener.
    delete_combobox();
}

void editable_combo_aspect_model_t::init(uicore7::ISysWindow* window)
{
    combo_model_t::init(window);
    set_window(window);
}

bool editable_combo_aspect_model_t::OnDrawCell(uicore7::IPainter* painter, int row, int col,
                                               const uicore7::rectangle<double>& rect)
{
    if (painter && has_combobox(row, col))
        grid_text::draw_drop_down_arrow(painter, rect);
    return check_column_t<combo_aspect_model_t>::OnDrawCell(painter, row, col, rect);
}

void editable_combo_aspect_model_t::GetContentRect(int row, int col,
                                                   uicore7::rectangle<double>& rect) const
{
    check_column_t<combo_aspect_model_t>::GetContentRect(row, col, rect);
    if (has_combobox(row, col))
        grid_text::leave_room_for_drop_down(rect);
}

uiframe7::CEditControl* editable_combo_aspect_model_t::GetEditorInt(int row, int col)
{
    uiframe7::CComboBox* combo = get_combobox();
    if (!combo || !has_combobox(row, col))
        return nullptr;
    grid_text::value_or_any::fill(*combo, get_rule_value(row, col), is_active(row, col));
    m_edit_row = row;
    m_edit_col = col;
    return combo;
}

void editable_combo_aspect_model_t::OnUpdateDataInt(int row, int col)
{
    if (uiframe7::CComboBox* combo = get_combobox())
        write_choice(row, col, combo->GetSelection());
}

void editable_combo_aspect_model_t::CBOnChoicItem(uiframe7::CComboBox* sender, int item)
{
    if (sender && sender == get_combobox())
        write_choice(m_edit_row, m_edit_col, item);
}

void editable_combo_aspect_model_t::write_choice(int row, int col, int item)
{
    const rule_ptr rule = get_rule(row);
    const std::optional<bool> value = grid_text::value_or_any::is_value(item);
    if (!rule || !has_combobox(row, col) || !value)
        return;
    rule->set_item_active(*value, get_column_datatype(col));
    refresh_view(row);
}

// Every member of the check column is compiled and exported with the library.
template class check_column_t<combo_aspect_model_t>;

} // namespace corr_dialogs2
