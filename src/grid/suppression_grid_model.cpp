#include "corr_dialogs2/suppression_grid_model.h"

#include "corr_dialogs2/ui_utils.h"
#include "grid_text.h"

#include "basekit2/path.h"

#include <algorithm>

namespace corr_dialogs2 {

using namespace suppfmt3;

namespace {

constexpr int column_count = 6;

const wchar_t* const caption_keys[] = {
    L"dlg.suppression_grid.name",          L"dlg.suppression_grid.file",
    L"dlg.suppression_grid.problem",       L"dlg.suppression_grid.description",
    L"dlg.suppression_grid.code_location", L"dlg.suppression_grid.locations",
    L"dlg.suppression_grid.stack",
};

} // namespace

suppression_grid_model_t::suppression_grid_model_t() = default;
suppression_grid_model_t::suppression_grid_model_t(const suppression_grid_model_t& other) = default;
suppression_grid_model_t&
suppression_grid_model_t::operator=(const suppression_grid_model_t& other) = default;
suppression_grid_model_t::~suppression_grid_model_t() = default;

// ---- rows

std::uint32_t suppression_grid_model_t::file_index(const suppression_file_ptr& file)
{
    if (!file)
        return no_file;
    const auto [it, added] =
        m_file_indexes.emplace(file.get(), static_cast<std::uint32_t>(m_files.size()));
    if (added)
        m_files.push_back(file);
    return it->second;
}

std::uint32_t suppression_grid_model_t::file_index_of(const rule_set_ptr& rule_set)
{
    const auto store_file =
        rule_set ? rule_set->get_file() : boost::shared_ptr<probstore3::suppression_file_t>();
    if (!store_file)
        return no_file;
    const auto found = m_store_file_indexes.find(store_file.get());
    if (found != m_store_file_indexes.end())
        return found->second;
    const std::uint32_t index = file_index(wrap_suppression_file(store_file));
    m_store_file_indexes.emplace(store_file.get(), index);
    return index;
}

void suppression_grid_model_t::add_row(const rule_set_ptr& rule_set, std::uint32_t file)
{
    const int rules = rule_set ? static_cast<int>(rule_set->get_rules().size()) : 0;
    m_rows.push_back({rule_set, file, std::max(1, rules)});
}

void suppression_grid_model_t::add_rules(const std::vector<rule_set_ptr>& rule_sets)
{
    m_rows.reserve(m_rows.size() + rule_sets.size());
    for (const auto& rule_set : rule_sets)
        add_row(rule_set, file_index_of(rule_set));
    rows_changed();
}

void suppression_grid_model_t::add_rules(const std::vector<rule_set_ptr>& rule_sets,
                                         const suppression_file_ptr& file)
{
    const std::uint32_t index = file_index(file);
    m_rows.reserve(m_rows.size() + rule_sets.size());
    for (const auto& rule_set : rule_sets)
        add_row(rule_set, index);
    rows_changed();
}

void suppression_grid_model_t::add_file(const suppression_file_ptr& file)
{
    const auto store_file =
        file ? file->get_file() : boost::shared_ptr<probstore3::suppression_file_t>();
    if (!store_file)
        return;
    // Rule sets of this store file found later share the given wrapper.
    m_store_file_indexes.emplace(store_file.get(), file_index(file));
    add_rules(store_file->get_rulesets(true), file);
}

void suppression_grid_model_t::clear()
{
    m_rows.clear();
    m_files.clear();
    m_file_indexes.clear();
    m_store_file_indexes.clear();
    rows_changed();
}

void suppression_grid_model_t::update_row_heights()
{
    for (auto& row : m_rows)
        row.lines =
            std::max(1, row.rule_set ? static_cast<int>(row.rule_set->get_rules().size()) : 0);
    UpdateModelState();
}

void suppression_grid_model_t::rows_changed()
{
    grid_text::rows_changed(*this, m_rows.size());
}

rule_set_ptr suppression_grid_model_t::get_rule_set(int row) const
{
    if (row < 0 || row >= static_cast<int>(m_rows.size()))
        return {};
    return m_rows[static_cast<size_t>(row)].rule_set;
}

suppression_file_ptr suppression_grid_model_t::get_file(int row) const
{
    if (row < 0 || row >= static_cast<int>(m_rows.size()))
        return {};
    const std::uint32_t file = m_rows[static_cast<size_t>(row)].file;
    return file == no_file ? suppression_file_ptr() : m_files[file];
}

std::wstring suppression_grid_model_t::get_file_path(int row) const
{
    const auto file = get_file(row);
    return file ? file->get_path() : std::wstring();
}

int suppression_grid_model_t::get_rule_count(int row) const
{
    if (row < 0 || row >= static_cast<int>(m_rows.size()))
        return 0;
    const auto& rule_set = m_rows[static_cast<size_t>(row)].rule_set;
    return rule_set ? static_cast<int>(rule_set->get_rules().size()) : 0;
}

rule_ptr suppression_grid_model_t::get_rule(int row, int index) const
{
    const auto rule_set = get_rule_set(row);
    if (!rule_set || index < 0 || index >= static_cast<int>(rule_set->get_rules().size()))
        return {};
    return rule_set->get_rules()[static_cast<size_t>(index)];
}

bool suppression_grid_model_t::apply_row_order(const std::vector<int>& order)
{
    if (order.size() != m_rows.size())
        return false;
    std::vector<row_t> sorted;
    sorted.reserve(m_rows.size());
    for (int old : order)
        sorted.push_back(m_rows[static_cast<size_t>(old)]);
    m_rows.swap(sorted);
    UpdateModelState(); // row heights moved with the rows
    return true;
}

// ---- header and buttons

void suppression_grid_model_t::init_header_vis_model(header_vis_model_t& header)
{
    for (size_t column = 0; column < column_count; ++column)
        header.add_item(column);
}

int suppression_grid_model_t::GetColIndex(int x) const
{
    return button_helper_t::GetColIndex(x);
}

bool suppression_grid_model_t::has_button(int column) const
{
    return column == code_location_column;
}

bool suppression_grid_model_t::on_button_click(int row, int y,
                                               const uicore7::screen_rectangle<int>& button)
{
    const int rules = get_rule_count(row);
    if (rules == 0)
        return false;
    // One button per rule line; the lines are centred in the row.
    const int line = std::max(1, get_line_height());
    const int top = button.top + std::max(0, (button.height() - rules * line) / 2);
    const int index = std::clamp((y - top) / line, 0, rules - 1);
    m_button_clicked(row, index);
    return true;
}

bool suppression_grid_model_t::is_multiline_column(int column) const
{
    return column != name_column && column != file_column;
}

// ---- content

int suppression_grid_model_t::GetRowCount() const
{
    return static_cast<int>(m_rows.size());
}

int suppression_grid_model_t::GetColumnCount() const
{
    return column_count;
}

std::wstring suppression_grid_model_t::GetColumnCaption(int col) const
{
    if (col < 0 || col > stack_column)
        return {};
    return translate(caption_keys[col]);
}

int suppression_grid_model_t::GetColumnImageIndex(int) const
{
    return -1;
}

int suppression_grid_model_t::GetColumnTextAlign(int) const
{
    return grid_text::caption_align;
}

std::wstring suppression_grid_model_t::rule_text(const rule_ptr& rule, int col) const
{
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
    case locations_column:
        return grid_text::frames_used(rule);
    default:
        return {};
    }
}

std::wstring suppression_grid_model_t::rule_lines(int row, int col) const
{
    const auto rule_set = get_rule_set(row);
    if (!rule_set)
        return {};
    std::wstring text;
    for (const auto& rule : rule_set->get_rules())
        if (rule)
            text += rule_text(rule, col) + L"\n";
    return text;
}

std::wstring suppression_grid_model_t::GetCellText(int row, int col) const
{
    const auto rule_set = get_rule_set(row);
    if (!rule_set)
        return {};
    switch (col) {
    case name_column:
        return rule_set->get_name();
    case file_column: {
        const std::wstring path = get_file_path(row);
        return path.empty() ? std::wstring() : basekit2::path_t(path).leaf();
    }
    case problem_column:
    case description_column:
    case code_location_column:
    case locations_column:
        return rule_lines(row, col);
    default:
        return {};
    }
}

int suppression_grid_model_t::GetCellImageIndex(int, int) const
{
    return -1;
}

int suppression_grid_model_t::GetCellTextAlign(int, int) const
{
    return grid_text::cell_align;
}

void suppression_grid_model_t::OnSortColumn(int col,
                                            gridview8::IHeaderItem::SortingDirection direction)
{
    if (col < 0 || col >= column_count || direction == gridview8::IHeaderItem::sdNone)
        return;
    reorder_rows(grid_text::sort_order(
        GetRowCount(), [&](int row) { return GetCellText(row, col); },
        direction == gridview8::IHeaderItem::sdDescending));
}

// ---- drawing

bool suppression_grid_model_t::every_rule_any(int row, int col) const
{
    const auto type = col == problem_column ? sdt_problem_type : sdt_description;
    const auto rule_set = get_rule_set(row);
    if (!rule_set || rule_set->get_rules().empty())
        return false;
    for (const auto& rule : rule_set->get_rules())
        if (rule && rule->is_item_active(type))
            return false;
    return true;
}

bool suppression_grid_model_t::GetAttr(int row, int col, gridview8::CCellAttr& attr) const
{
    // A cell that shows only any-value words is grey: it names nothing.
    if ((col == problem_column || col == description_column) && every_rule_any(row, col)) {
        attr.grayed = true;
        return true;
    }
    return false;
}

bool suppression_grid_model_t::OnDrawCell(uicore7::IPainter* painter, int row, int col,
                                          const uicore7::rectangle<double>& rect)
{
    if (!painter || !is_button_enabled() || !has_button(col))
        return false;
    const int rules = get_rule_count(row);
    if (rules == 0)
        return false;
    const double line = std::max(1, get_line_height());
    const double top = rect.top + std::max(0.0, (rect.height() - rules * line) / 2);
    const double left = std::max(rect.left, rect.right - get_button_width());
    for (int i = 0; i < rules; ++i) {
        const double y = top + i * line;
        draw_button(painter, {left, std::max(rect.top, y - 1), rect.right - 1,
                              std::min(rect.bottom - 1, y + line + 1)});
    }
    return false; // the grid draws the text beside the buttons
}

void suppression_grid_model_t::GetContentRect(int, int col, uicore7::rectangle<double>& rect) const
{
    rect = get_text_rect(col, rect);
}

int suppression_grid_model_t::GetItemSize(int item) const
{
    // Asked for every row whenever the row offsets are computed.
    if (item < 0 || item >= static_cast<int>(m_rows.size()))
        return GetDefaultItemSize();
    const int lines = m_rows[static_cast<size_t>(item)].lines;
    const int single = GetDefaultItemSize() > 0 ? GetDefaultItemSize() : get_line_height() + 6;
    return single + (lines - 1) * get_line_height();
}

// Every member of the check column is compiled and exported with the library.
template class check_column_t<suppression_grid_model_t>;

} // namespace corr_dialogs2
