#include "corr_dialogs2/stack_combo_grid_model.h"

#include "corr_dialogs2/ui_utils.h"
#include "grid_text.h"

#include <algorithm>

namespace corr_dialogs2 {

using namespace suppfmt3;

// ---- stack_combo_grid_model_t

stack_combo_grid_model_t::stack_combo_grid_model_t() = default;
stack_combo_grid_model_t::stack_combo_grid_model_t(const stack_combo_grid_model_t& other) = default;
stack_combo_grid_model_t&
stack_combo_grid_model_t::operator=(const stack_combo_grid_model_t& other) = default;
stack_combo_grid_model_t::~stack_combo_grid_model_t() = default;

const std::vector<suppfmt_datatype>& stack_combo_grid_model_t::get_stack_datatypes()
{
    static const std::vector<suppfmt_datatype> types = {sdt_module, sdt_function, sdt_source,
                                                        sdt_line};
    return types;
}

void stack_combo_grid_model_t::init(rule_ptr rule)
{
    m_rule = std::move(rule);
    const int count = GetRowCount();
    if (GetCount() != count)
        SetCount(count);
    else
        UpdateModelState();
}

stack_ptr stack_combo_grid_model_t::live_stack() const
{
    return m_rule ? m_rule->get_stack(false) : stack_ptr();
}

shared_pointer<stack_item_t> stack_combo_grid_model_t::stack_item() const
{
    return m_rule ? as_stack_item(m_rule->get_item(sdt_call_stack))
                  : shared_pointer<stack_item_t>();
}

suppression_rule_t::callstack_t stack_combo_grid_model_t::get_stack() const
{
    const auto item = stack_item();
    return item ? item->get_callstack() : suppression_rule_t::callstack_t();
}

suppfmt_datatype stack_combo_grid_model_t::get_column_datatype(int col) const
{
    const auto& types = get_stack_datatypes();
    if (col < 0 || col >= static_cast<int>(types.size()))
        return sdt_none;
    return types[static_cast<size_t>(col)];
}

std::wstring stack_combo_grid_model_t::get_stack_item(int row, int col) const
{
    const auto type = get_column_datatype(col);
    const auto stack = live_stack();
    if (!stack || type == sdt_none || row < 0 || row >= stack->stack_size())
        return {};
    return stack->get_frame_field_value(row, type);
}

bool stack_combo_grid_model_t::is_active(int row, int col) const
{
    const auto type = get_column_datatype(col);
    const auto stack = live_stack();
    if (!stack || type == sdt_none || row < 0 || row >= stack->stack_size())
        return false;
    return supp_helpers::is_stack_rule_active(stack, row, type);
}

bool stack_combo_grid_model_t::is_meaningful_value(int row, int col) const
{
    const std::wstring value = get_stack_item(row, col);
    return !value.empty() && !(get_column_datatype(col) == sdt_source && value == L"*");
}

void stack_combo_grid_model_t::init_header_vis_model(header_vis_model_t& header)
{
    for (size_t column = 0; column < get_stack_datatypes().size(); ++column)
        header.add_item(column);
}

int stack_combo_grid_model_t::GetRowCount() const
{
    const auto stack = live_stack();
    return stack ? stack->stack_size() : 0;
}

int stack_combo_grid_model_t::GetColumnCount() const
{
    return static_cast<int>(get_stack_datatypes().size());
}

int stack_combo_grid_model_t::GetColumnImageIndex(int) const
{
    return -1;
}

int stack_combo_grid_model_t::GetColumnTextAlign(int) const
{
    return grid_text::caption_align;
}

int stack_combo_grid_model_t::GetCellImageIndex(int, int) const
{
    return -1;
}

int stack_combo_grid_model_t::GetCellTextAlign(int, int) const
{
    return grid_text::cell_align;
}

std::wstring stack_combo_grid_model_t::GetColumnCaption(int col) const
{
    const auto type = get_column_datatype(col);
    if (!m_rule || type == sdt_none)
        return {};
    return m_rule->get_datatype_international(type);
}

std::wstring stack_combo_grid_model_t::GetCellText(int row, int col) const
{
    if (row < 0 || row >= GetRowCount() || get_column_datatype(col) == sdt_none)
        return {};
    return is_active(row, col) ? get_stack_item(row, col) : grid_text::any_value();
}

bool stack_combo_grid_model_t::GetAttr(int row, int col, gridview8::CCellAttr& attr) const
{
    if (row < 0 || row >= GetRowCount() || get_column_datatype(col) == sdt_none ||
        is_active(row, col))
        return false;
    attr.grayed = true;
    return true;
}

// ---- editable_stack_grid_model_t

editable_stack_grid_model_t::editable_stack_grid_model_t() = default;
editable_stack_grid_model_t::editable_stack_grid_model_t(const editable_stack_grid_model_t& other) =
    default;
editable_stack_grid_model_t&
editable_stack_grid_model_t::operator=(const editable_stack_grid_model_t& other) = default;

editable_stack_grid_model_t::~editable_stack_grid_model_t()
{
    // Before this object stops being a combo-box listener.
    delete_combobox();
}

void editable_stack_grid_model_t::init(uicore7::ISysWindow* window)
{
    combo_model_t::init(window);
    set_window(window);
}

bool editable_stack_grid_model_t::has_combo(int row, int col) const
{
    const auto type = get_column_datatype(col);
    if (type == sdt_none || row < 0 || row >= GetRowCount() || !is_meaningful_value(row, col))
        return false;
    if (type != sdt_line)
        return true;
    const int source = 2; // column of the source file
    return supp_helpers::is_stack_rule_active(live_stack(), row, sdt_source) &&
           is_meaningful_value(row, source);
}

std::wstring editable_stack_grid_model_t::GetColumnCaption(int col) const
{
    if (col == get_check_column())
        return translate(L"dlg.suppression_stack_grid.use_in_rule");
    return check_column_t<stack_combo_grid_model_t>::GetColumnCaption(col);
}

bool editable_stack_grid_model_t::GetAttr(int row, int col, gridview8::CCellAttr& attr) const
{
    if (col != get_check_column() && row >= 0 && row < get_count() && !is_checked(row)) {
        attr.grayed = true;
        return true;
    }
    return check_column_t<stack_combo_grid_model_t>::GetAttr(row, col, attr);
}

bool editable_stack_grid_model_t::OnDrawCell(uicore7::IPainter* painter, int row, int col,
                                             const uicore7::rectangle<double>& rect)
{
    if (painter && has_combo(row, col))
        grid_text::draw_drop_down_arrow(painter, rect);
    return check_column_t<stack_combo_grid_model_t>::OnDrawCell(painter, row, col, rect);
}

void editable_stack_grid_model_t::GetContentRect(int row, int col,
                                                 uicore7::rectangle<double>& rect) const
{
    check_column_t<stack_combo_grid_model_t>::GetContentRect(row, col, rect);
    if (has_combo(row, col))
        grid_text::leave_room_for_drop_down(rect);
}

uiframe7::CEditControl* editable_stack_grid_model_t::GetEditorInt(int row, int col)
{
    uiframe7::CComboBox* combo = get_combobox();
    if (!combo || !has_combo(row, col))
        return nullptr;
    grid_text::value_or_any::fill(*combo, get_stack_item(row, col), is_active(row, col));
    m_edit_row = row;
    m_edit_col = col;
    const auto stack = stack_item();
    m_frame_before_edit.reset();
    if (stack && static_cast<size_t>(row) < stack->size())
        m_frame_before_edit = stack->frame(static_cast<size_t>(row));
    return combo;
}

void editable_stack_grid_model_t::OnUpdateDataInt(int row, int col)
{
    if (uiframe7::CComboBox* combo = get_combobox())
        write_choice(row, col, combo->GetSelection());
}

void editable_stack_grid_model_t::CBOnChoicItem(uiframe7::CComboBox* sender, int item)
{
    if (sender && sender == get_combobox())
        write_choice(m_edit_row, m_edit_col, item);
}

void editable_stack_grid_model_t::CBOnEditEnd(uiframe7::CComboBox* sender, bool keep_value)
{
    if (!sender || sender != get_combobox())
        return;
    std::optional<callstack_frame_t> before;
    before.swap(m_frame_before_edit);
    if (keep_value || !before)
        return;
    const auto stack = stack_item();
    const auto row = static_cast<size_t>(m_edit_row);
    if (!stack || m_edit_row < 0 || row >= stack->size() || stack->frame(row) == *before)
        return;
    stack->edit_frame(row) = *before;
    refresh_view(m_edit_row);
}

void editable_stack_grid_model_t::write_choice(int row, int col, int item)
{
    const rule_ptr rule = get_rule();
    const std::optional<bool> value = grid_text::value_or_any::is_value(item);
    if (!rule || !has_combo(row, col) || !value)
        return;
    supp_helpers::set_stack_item_active(rule->get_item(sdt_call_stack), row,
                                        get_column_datatype(col), *value);
    // Switching a source also switches its line: the whole row may change.
    refresh_view(row);
}

// Every member of the check column is compiled and exported with the library.
template class check_column_t<stack_combo_grid_model_t>;

} // namespace corr_dialogs2
