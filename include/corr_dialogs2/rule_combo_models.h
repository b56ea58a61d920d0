#pragma once
// The candidate rules of the create-suppression dialog side by side: one row
// per rule, a column per aspect (where the user picks the concrete value or
// the any-value wildcard in a combo box), the number of frames, and the
// rule's code location with the stack-editor button.
#include "corr_dialogs2/combo_model.h"
#include "corr_dialogs2/export.h"
#include "corr_dialogs2/grid_framework.h"
#include "corr_dialogs2/supp_helpers.h"

#include "probstore3/suppression_rule_set.h"
#include "suppfmt3/datatype.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <utility>
#include <vector>

namespace corr_dialogs2 {

class CORR_DIALOGS2_API combo_aspect_model_t : public button_helper_t,
                                               public gridview8::CDefPlainModel,
                                               public gridview8::CDefDrawingModel,
                                               public uiframe7::CSimpleDiscreteItemViewModel
{
public:
    enum column_kind_t {
        aspect_kind, // a rule aspect: its value or any value
        frames_kind, // the number of frames of the rule's stack
        stack_kind,  // the rule's code location, with the stack button
    };
    enum column_t {
        description_column = 0,
        frames_column = 1,
        stack_column = 2,
        // Captioned only: the column a wrapper adds (the check column).
        edit_stack_column = 3,
    };
    using column_table_t = std::vector<std::pair<column_kind_t, suppfmt3::suppfmt_datatype>>;
    using button_signal_t = basekit2::_internal::signal_t<int>;

    combo_aspect_model_t();
    combo_aspect_model_t(const combo_aspect_model_t& other);
    combo_aspect_model_t& operator=(const combo_aspect_model_t& other);
    ~combo_aspect_model_t() override;

    // The column table every instance shares: built once, never changed.
    static const column_table_t& get_columns();

    // The rows are the rule set's rules (or the given ones), replacing earlier rows.
    void init(boost::shared_ptr<probstore3::suppression_rule_set_t> rule_set);
    void init(std::vector<rule_ptr> rules);
    int get_rule_count() const { return static_cast<int>(m_rules.size()); }

    // Null for an invalid row.
    rule_ptr get_rule(int row) const;
    // 0 (sdt_none) for a column outside the table.
    suppfmt3::suppfmt_datatype get_column_datatype(int col) const;
    // The rule's value of the column's aspect; empty for invalid indexes.
    std::wstring get_rule_value(int row, int col) const;
    // The number of frames of the rule's stack, as text.
    std::wstring get_stack_size(int row) const;
    // Frames and stack columns: true; an aspect column: whether the rule
    // uses the aspect; false out of range.
    bool is_active(int row, int col) const;
    // Whether a cell is edited through the combo box: aspect cells of rules
    // that have the aspect; never the frames, stack, check or button columns.
    bool has_combobox(int row, int col) const;

    void init_header_vis_model(header_vis_model_t& header);
    // The stack button of a row was pressed (the host opens the stack editor).
    button_signal_t& button_clicked() { return m_button_clicked; }

    bool has_button(int column) const override;
    bool on_button_click(int row, int y, const uicore7::screen_rectangle<int>& button) override;

    int GetRowCount() const override;
    int GetColumnCount() const override;
    int GetColumnImageIndex(int col) const override;
    int GetColumnTextAlign(int col) const override;
    int GetCellImageIndex(int row, int col) const override;
    int GetCellTextAlign(int row, int col) const override;
    std::wstring GetColumnCaption(int col) const override;
    std::wstring GetCellText(int row, int col) const override;
    void OnSortColumn(int col, gridview8::IHeaderItem::SortingDirection direction) override;

    // Any-value cells are grey; the stack column has its button.
    bool GetAttr(int row, int col, gridview8::CCellAttr& attr) const override;
    bool OnDrawCell(uicore7::IPainter* painter, int row, int col,
                    const uicore7::rectangle<double>& rect) override;
    void GetContentRect(int row, int col, uicore7::rectangle<double>& rect) const override;

protected:
    bool apply_row_order(const std::vector<int>& order) override;
    bool is_aspect_column(int col) const;

private:
    void rows_changed();

    std::vector<rule_ptr> m_rules;
    button_signal_t m_button_clicked;
};

// With a check column (which rules to create) and the combo box that edits
// aspect cells. A pick in the combo box changes the rule at once; so does
// the end of an edit that keeps its value.
class CORR_DIALOGS2_API editable_combo_aspect_model_t : public check_column_t<combo_aspect_model_t>,
                                                        public combo_model_t,
                                                        public gridview8::CDefEditingModel,
                                                        public uiframe7::IComboBoxEvents
{
public:
    editable_combo_aspect_model_t();
    editable_combo_aspect_model_t(const editable_combo_aspect_model_t& other);
    editable_combo_aspect_model_t& operator=(const editable_combo_aspect_model_t& other);
    ~editable_combo_aspect_model_t() override;

    using combo_aspect_model_t::init;
    // Binds the combo box and the stack buttons to the grid's window.
    void init(uicore7::ISysWindow* window) override;

    bool OnDrawCell(uicore7::IPainter* painter, int row, int col,
                    const uicore7::rectangle<double>& rect) override;
    void GetContentRect(int row, int col, uicore7::rectangle<double>& rect) const override;

    uiframe7::CEditControl* GetEditorInt(int row, int col) override;
    void OnUpdateDataInt(int row, int col) override;
    void CBOnChoicItem(uiframe7::CComboBox* sender, int item) override;

private:
    // Entry 0 is the value, entry 1 any value.
    void write_choice(int row, int col, int item);

    int m_edit_row = -1;
    int m_edit_col = -1;
};

} // namespace corr_dialogs2
