#pragma once
// The grid of suppressions: one row per rule set, with the file that holds
// it, its rules' problems, descriptions, code locations (with a view button)
// and the frames they use. editable_suppression_grid_model_t adds a check
// column to pick rows (the delete dialog).
#include "corr_dialogs2/export.h"
#include "corr_dialogs2/grid_framework.h"
#include "corr_dialogs2/supp_helpers.h"
#include "corr_dialogs2/suppression_file.h"

#include "probstore3/suppression_rule_set.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace corr_dialogs2 {

using rule_set_ptr = boost::shared_ptr<probstore3::suppression_rule_set_t>;

class CORR_DIALOGS2_API suppression_grid_model_t : public button_helper_t,
                                                   public gridview8::CDefPlainModel,
                                                   public gridview8::CDefDrawingModel,
                                                   public uiframe7::CSimpleDiscreteItemViewModel
{
public:
    enum column_t {
        name_column = 0,
        file_column = 1,
        problem_column = 2,
        description_column = 3,
        code_location_column = 4,
        locations_column = 5,
        // Captioned only, for a host that shows the stack in a column of its own.
        stack_column = 6,
    };
    // Row, and index of the rule whose line the view button was pressed on.
    using button_signal_t = basekit2::_internal::signal_t<int, int>;

    suppression_grid_model_t();
    suppression_grid_model_t(const suppression_grid_model_t& other);
    suppression_grid_model_t& operator=(const suppression_grid_model_t& other);
    ~suppression_grid_model_t() override;

    // Rows for rule sets, in the given order, each with the file it was read
    // from (rule sets of one problem-store file share one file object; a
    // rule set without a file has none).
    void add_rules(const std::vector<rule_set_ptr>& rule_sets);
    // Rows for rule sets that all live in file.
    void add_rules(const std::vector<rule_set_ptr>& rule_sets, const suppression_file_ptr& file);
    // A row for every rule set of a file.
    void add_file(const suppression_file_ptr& file);
    void clear();

    rule_set_ptr get_rule_set(int row) const;
    suppression_file_ptr get_file(int row) const;
    std::wstring get_file_path(int row) const;
    int get_rule_count(int row) const;
    // The index-th rule of the row's rule set; null out of range.
    rule_ptr get_rule(int row, int index) const;

    // Which rule's view button was pressed (the host opens its stack).
    button_signal_t& button_clicked() { return m_button_clicked; }

    // A row is as high as its rule set has rules, counted when the row is
    // added (so that 100,000 rows need not be visited for their heights);
    // after rules were added to or taken from a shown rule set, call this.
    void update_row_heights();

    void init_header_vis_model(header_vis_model_t& header);

    // button_helper_t
    int GetColIndex(int x) const override;
    bool has_button(int column) const override;
    bool on_button_click(int row, int y, const uicore7::screen_rectangle<int>& button) override;
    virtual bool is_multiline_column(int column) const;

    // gridview8::IGridModel
    int GetRowCount() const override;
    int GetColumnCount() const override;
    std::wstring GetColumnCaption(int col) const override;
    int GetColumnImageIndex(int col) const override;
    int GetColumnTextAlign(int col) const override;
    std::wstring GetCellText(int row, int col) const override;
    int GetCellImageIndex(int row, int col) const override;
    int GetCellTextAlign(int row, int col) const override;
    void OnSortColumn(int col, gridview8::IHeaderItem::SortingDirection direction) override;

    // gridview8::IDrawingModel
    bool GetAttr(int row, int col, gridview8::CCellAttr& attr) const override;
    bool OnDrawCell(uicore7::IPainter* painter, int row, int col,
                    const uicore7::rectangle<double>& rect) override;
    void GetContentRect(int row, int col, uicore7::rectangle<double>& rect) const override;

    // uiframe7::IDiscreteItemViewModel: one text line per rule.
    int GetItemSize(int item) const override;

protected:
    bool apply_row_order(const std::vector<int>& order) override;

private:
    static constexpr std::uint32_t no_file = ~std::uint32_t(0);
    struct row_t
    {
        rule_set_ptr rule_set;
        std::uint32_t file = no_file; // index into m_files
        std::int32_t lines = 1;
    };

    std::uint32_t file_index(const suppression_file_ptr& file);
    std::uint32_t file_index_of(const rule_set_ptr& rule_set);
    void add_row(const rule_set_ptr& rule_set, std::uint32_t file);
    void rows_changed();
    // The lines of a multi-line column, one per rule.
    std::wstring rule_lines(int row, int col) const;
    std::wstring rule_text(const rule_ptr& rule, int col) const;
    bool every_rule_any(int row, int col) const;

    std::vector<row_t> m_rows;
    // The files of the rows, each once; rows of one problem-store file
    // share one wrapper.
    std::vector<suppression_file_ptr> m_files;
    std::map<const suppression_file_t*, std::uint32_t> m_file_indexes;
    std::map<const probstore3::suppression_file_t*, std::uint32_t> m_store_file_indexes;
    button_signal_t m_button_clicked;
};

class CORR_DIALOGS2_API editable_suppression_grid_model_t
    : public check_column_t<suppression_grid_model_t>
{
};

} // namespace corr_dialogs2
