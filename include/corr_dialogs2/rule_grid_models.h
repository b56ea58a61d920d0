#pragma once
// The inside of a suppression: its rules, one row each, with problem,
// description, code location, an optional stack button and the frames each
// rule uses (aspect_grid_model_t; with a check column to pick rules,
// editable_aspect_grid_model_t); and the frames of one rule stack, one line
// each (stack_grid_model_t).
#include "corr_dialogs2/export.h"
#include "corr_dialogs2/grid_framework.h"
#include "corr_dialogs2/supp_helpers.h"

#include "probstore3/suppression_rule_set.h"

#include <boost/shared_ptr.hpp>

#include <set>
#include <string>
#include <vector>

namespace corr_dialogs2 {

class CORR_DIALOGS2_API aspect_grid_model_t : public button_helper_t,
                                              public gridview8::CDefPlainModel,
                                              public gridview8::CDefDrawingModel,
                                              public uiframe7::CSimpleDiscreteItemViewModel
{
public:
    enum column_t {
        problem_column = 0,
        description_column = 1,
        code_location_column = 2,
        // The stack button while it is enabled; otherwise the locations.
        stack_column = 3,
        // The locations while the stack button is enabled; otherwise empty.
        locations_column = 4,
    };
    using button_signal_t = basekit2::_internal::signal_t<int>;

    aspect_grid_model_t();
    aspect_grid_model_t(const aspect_grid_model_t& other);
    aspect_grid_model_t& operator=(const aspect_grid_model_t& other);
    ~aspect_grid_model_t() override;

    // The rows are the rules (replacing earlier ones), each turned into a
    // stack rule (convert_to_stack) as it is taken in.
    void init(boost::shared_ptr<probstore3::suppression_rule_set_t> rule_set);
    void init(std::vector<rule_ptr> rules);
    void clear();
    int get_count() const { return static_cast<int>(m_rules.size()); }
    rule_ptr get_rule(int row) const;

    // Uses exactly the aspects in active (of 9, 60, 13, 20, 16, 21, 95) in
    // the row's rule; the others are switched off.
    void update_row(int row, std::set<int> active);

    // The column of the locations: 4 with the stack button, else 3.
    int get_header_column_index() const;
    // Problem and description: the columns shown straight from rule fields.
    int get_simple_columns_count() const { return 2; }

    void init_header_vis_model(header_vis_model_t& header);
    // The stack button of a row was pressed (the host shows its stack).
    button_signal_t& button_clicked() { return m_button_clicked; }

    // button_helper_t: the stack column has the button while it is enabled.
    bool has_button(int column) const override;
    bool on_button_click(int row, int y, const uicore7::screen_rectangle<int>& button) override;
    virtual bool is_multiline_column(int column) const;

    int GetRowCount() const override;
    int GetColumnCount() const override;
    std::wstring GetColumnCaption(int col) const override;
    int GetColumnImageIndex(int col) const override;
    int GetColumnTextAlign(int col) const override;
    std::wstring GetCellText(int row, int col) const override;
    int GetCellTextAlign(int row, int col) const override;
    int GetCellImageIndex(int row, int col) const override;
    void OnSortColumn(int col, gridview8::IHeaderItem::SortingDirection direction) override;

    bool GetAttr(int row, int col, gridview8::CCellAttr& attr) const override;
    bool OnDrawCell(uicore7::IPainter* painter, int row, int col,
                    const uicore7::rectangle<double>& rect) override;

protected:
    bool apply_row_order(const std::vector<int>& order) override;

private:
    void rows_changed();

    std::vector<rule_ptr> m_rules;
    button_signal_t m_button_clicked;
};

class CORR_DIALOGS2_API editable_aspect_grid_model_t : public check_column_t<aspect_grid_model_t>
{
};

// The frames of one rule stack, one line each: module!function - source:line,
// wildcards as bracketed any-value words, an elided frame as "...". The
// rows keep the stack's order (sorting does not reorder a call stack).
class CORR_DIALOGS2_API stack_grid_model_t : public button_helper_t,
                                             public gridview8::CDefPlainModel,
                                             public gridview8::CDefDrawingModel,
                                             public uiframe7::CSimpleDiscreteItemViewModel
{
public:
    stack_grid_model_t();
    stack_grid_model_t(const stack_grid_model_t& other);
    stack_grid_model_t& operator=(const stack_grid_model_t& other);
    ~stack_grid_model_t() override;

    // May be null: no rows.
    void init(stack_ptr stack);
    stack_ptr get_stack() const { return m_stack; }

    void init_header_vis_model(header_vis_model_t& header);

    int GetRowCount() const override;
    int GetColumnCount() const override;
    std::wstring GetColumnCaption(int col) const override;
    int GetColumnImageIndex(int col) const override;
    int GetColumnTextAlign(int col) const override;
    std::wstring GetCellText(int row, int col) const override;
    int GetCellImageIndex(int row, int col) const override;
    int GetCellTextAlign(int row, int col) const override;
    void OnSortColumn(int col, gridview8::IHeaderItem::SortingDirection direction) override;

    // Elided frames are grey.
    bool GetAttr(int row, int col, gridview8::CCellAttr& attr) const override;

private:
    stack_ptr m_stack;
};

} // namespace corr_dialogs2
