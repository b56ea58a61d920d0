#include "corr_dialogs2/rule_grid_models.h"

#include "corr_dialogs2/ui_utils.h"
#include "grid_text.h"

#include <algorithm>
#include <array>

namespace corr_dialogs2 {

using namespace suppfmt3;

namespace {

constexpr int column_count = 5;

// The aspects update_row sets, in the order rules show them.
constexpr std::array<suppfmt_datatype, 7> aspect_list = {
    sdt_problem_type, sdt_description, sdt_module,    sdt_function,
    sdt_source,       sdt_line,        sdt_call_stack};

} // namespace

// ---- aspect_grid_model_t

aspect_grid_model_t::aspect_grid_model_t() = default;
aspect_grid_model_t::aspect_grid_model_t(const aspect_grid_model_t& other) = default;
aspect_grid_model_t& aspect_grid_model_t::operator=(const aspect_grid_model_t& other) = default;
aspect_grid_model_t::~aspect_grid_model_t() = default;

void aspect_grid_model_t::init(boost::shared_ptr<probstore3::suppression_rule_set_t> rule_set)
{
    init(rule_set ? rule_set->get_rules() : std::vector<rule_ptr>());
}

void aspect_grid_model_t::init(std::vector<rule_ptr> rules)
{
    m_rules.clear();
    for (auto& rule : rules) {
        if (!rule)
            continue;
        rule->convert_to_stack();
        m_rules.push_back(std::move(rule));
    }
    rows_changed();
}

void aspect_grid_model_t::clear()
{
    m_rules.clear();
    rows_changed();
}

void aspect_grid_model_t::rows_changed()
{
    grid_text::rows_changed(*this, m_rules.size());
}

rule_ptr aspect_grid_model_t::get_rule(int row) const
{
    if (row < 0 || row >= get_count())
        return {};
    return m_rules[static_cast<size_t>(row)];
}

void aspect_grid_model_t::update_row(int row, std::set<int> active)
{
    const rule_ptr rule = get_rule(row);
    if (!rule)
        return;
    for (const auto aspect : aspect_list)
        rule->set_item_active(active.count(aspect) != 0, aspect);
}

int aspect_grid_model_t::get_header_column_index() const
{
    return is_button_enabled() ? locations_column : stack_column;
}

void aspect_grid_model_t::init_header_vis_model(header_vis_model_t& header)
{
    header.add_item(problem_column);
    header.add_item(description_column);
    header.add_item(code_location_column);
    if (is_button_enabled())
        header.add_item(stack_column);
    header.add_item(static_cast<size_t>(get_header_column_index()));
}

bool aspect_grid_model_t::apply_row_order(const std::vector<int>& order)
{
    if (order.size() != m_rules.size())
        return false;
    std::vector<rule_ptr> sorted;
    sorted.reserve(m_rules.size());
    for (int old : order)
        sorted.push_back(m_rules[static_cast<size_t>(old)]);
    m_rules.swap(sorted);
    UpdateModelState();
    return true;
}

bool aspect_grid_model_t::has_button(int column) const
{
    return column == stack_column && is_button_enabled();
}

bool aspect_grid_model_t::on_button_click(int row, int, const uicore7::screen_rectangle<int>&)
{
    m_button_clicked(row);
    return true;
}

bool aspect_grid_model_t::is_multiline_column(int) const
{
    return false;
}

int aspect_grid_model_t::GetRowCount() const
{
    return get_count();
}

int aspect_grid_model_t::GetColumnCount() const
{
    return column_count;
}

std::wstring aspect_grid_model_t::GetColumnCaption(int col) const
{
    switch (col) {
    case problem_column:
        return m_rules.empty() ? std::wstring()
                               : m_rules.front()->get_datatype_international(sdt_problem_type);
    case description_column:
        return translate(L"dlg.suppression_grid.description");
    case code_location_column:
        return translate(L"dlg.suppression_grid.code_location");
    case stack_column:
        return translate(is_button_enabled() ? L"dlg.suppression_grid.stack"
                                             : L"dlg.suppression_grid.locations");
    case locations_column:
        return is_button_enabled() ? translate(L"dlg.suppression_grid.locations") : std::wstring();
    default:
        return {};
    }
}

int aspect_grid_model_t::GetColumnImageIndex(int) const
{
    return -1;
}

int aspect_grid_model_t::GetColumnTextAlign(int) const
{
    return grid_text::caption_align;
}

std::wstring aspect_grid_model_t::GetCellText(int row, int col) const
{
    const rule_ptr rule = get_rule(row);
    if (!rule || has_button(col))
        return {};
    switch (col) {
    case problem_column:
        return rule->is_item_active(sdt_problem_type)
                   ? rule->get_field_value(sdt_problem_type)
                   : translate(L"dlg.suppression_grid.any_problem");
    case description_column:
        return rule->is_item_active(sdt_description)
                   ? rule->get_field_value(sdt_description)
                   : translate(L"dlg.suppression_grid.any_description");
    case code_location_column:
        return create_rule_description(rule, {});
    default:
        return col == get_header_column_index() ? grid_text::frames_used(rule) : std::wstring();
    }
}

int aspect_grid_model_t::GetCellTextAlign(int, int) const
{
    return grid_text::cell_align;
}

int aspect_grid_model_t::GetCellImageIndex(int, int) const
{
    return -1;
}

void aspect_grid_model_t::OnSortColumn(int col, gridview8::IHeaderItem::SortingDirection direction)
{
    if (col < 0 || col >= column_count || has_button(col) ||
        direction == gridview8::IHeaderItem::sdNone)
        return;
    reorder_rows(grid_text::sort_order(
        GetRowCount(), [&](int row) { return GetCellText(row, col); },
        direction == gridview8::IHeaderItem::sdDescending));
}

bool aspect_grid_model_t::GetAttr(int row, int col, gridview8::CCellAttr& attr) const
{
    const rule_ptr rule = get_rule(row);
    if (!rule)
        return false;
    const bool any = (col == problem_column && !rule->is_item_active(sdt_problem_type)) ||
                     (col == description_column && !rule->is_item_active(sdt_description));
    if (any)
        attr.grayed = true;
    return any;
}

bool aspect_grid_model_t::OnDrawCell(uicore7::IPainter* painter, int row, int col,
                                     const uicore7::rectangle<double>& rect)
{
    if (!painter || !has_button(col) || !get_rule(row))
        return false;
    const double left = std::max(rect.left, rect.right - get_button_width());
    draw_button(painter, {left, rect.top + 1, rect.right - 1, rect.bottom - 2});
    return true;
}

// ---- stack_grid_model_t

stack_grid_model_t::stack_grid_model_t() = default;
stack_grid_model_t::stack_grid_model_t(const stack_grid_model_t& other) = default;
stack_grid_model_t& stack_grid_model_t::operator=(const stack_grid_model_t& other) = default;
stack_grid_model_t::~stack_grid_model_t() = default;

void stack_grid_model_t::init(stack_ptr stack)
{
    m_stack = std::move(stack);
    const int count = GetRowCount();
    if (GetCount() != count)
        SetCount(count);
    else
        UpdateModelState();
}

void stack_grid_model_t::init_header_vis_model(header_vis_model_t& header)
{
    header.add_item(0);
}

int stack_grid_model_t::GetRowCount() const
{
    return m_stack ? m_stack->stack_size() : 0;
}

int stack_grid_model_t::GetColumnCount() const
{
    return 1;
}

std::wstring stack_grid_model_t::GetColumnCaption(int) const
{
    return {};
}

int stack_grid_model_t::GetColumnImageIndex(int) const
{
    return -1;
}

int stack_grid_model_t::GetColumnTextAlign(int col) const
{
    return GetCellTextAlign(0, col);
}

std::wstring stack_grid_model_t::GetCellText(int row, int) const
{
    return create_stack_line(m_stack, row);
}

int stack_grid_model_t::GetCellImageIndex(int, int) const
{
    return -1;
}

int stack_grid_model_t::GetCellTextAlign(int, int) const
{
    return grid_text::cell_align;
}

void stack_grid_model_t::OnSortColumn(int, gridview8::IHeaderItem::SortingDirection) {}

bool stack_grid_model_t::GetAttr(int row, int, gridview8::CCellAttr& attr) const
{
    if (!m_stack || row < 0 || row >= m_stack->stack_size() || m_stack->is_frame_active(row))
        return false;
    attr.grayed = true;
    return true;
}

// Every member of the check column is compiled and exported with the library.
template class check_column_t<aspect_grid_model_t>;

} // namespace corr_dialogs2
