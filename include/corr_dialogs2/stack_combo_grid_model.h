#pragma once
// The call stack of one rule: a row per frame, a column per frame field
// (module, function, source file, line), each the frame's value or the
// any-value wildcard. editable_stack_grid_model_t adds the check column
// ("use in rule": which frames the rule uses) and the combo box that edits
// a field; a pick changes the rule at once.
#include "corr_dialogs2/combo_model.h"
#include "corr_dialogs2/export.h"
#include "corr_dialogs2/grid_framework.h"
#include "corr_dialogs2/supp_helpers.h"

#include "suppfmt3/datatype.h"
#include "suppfmt3/suppression_rule.h"

#include <optional>
#include <string>
#include <vector>

namespace corr_dialogs2 {

class CORR_DIALOGS2_API stack_combo_grid_model_t : public button_helper_t,
                                                   public gridview8::CDefPlainModel,
                                                   public gridview8::CDefDrawingModel,
                                                   public uiframe7::CSimpleDiscreteItemViewModel
{
public:
    stack_combo_grid_model_t();
    stack_combo_grid_model_t(const stack_combo_grid_model_t& other);
    stack_combo_grid_model_t& operator=(const stack_combo_grid_model_t& other);
    ~stack_combo_grid_model_t() override;

    // The frame fields, in column order: 13, 20, 16, 21. Shared, never changed.
    static const std::vector<suppfmt3::suppfmt_datatype>& get_stack_datatypes();

    void init(rule_ptr rule);
    rule_ptr get_rule() const { return m_rule; }
    // The frames of the rule's stack item; empty without one.
    suppfmt3::suppression_rule_t::callstack_t get_stack() const;

    // 0 (sdt_none) outside the columns.
    suppfmt3::suppfmt_datatype get_column_datatype(int col) const;
    // The frame's value of the column's field; empty for invalid indexes.
    std::wstring get_stack_item(int row, int col) const;
    // Whether the field takes part in the rule; false out of range.
    bool is_active(int row, int col) const;
    // Whether the frame has a value worth matching for the field: not
    // empty, and a source other than the wildcard "*".
    bool is_meaningful_value(int row, int col) const;

    void init_header_vis_model(header_vis_model_t& header);

    int GetRowCount() const override;
    int GetColumnCount() const override;
    int GetColumnImageIndex(int col) const override;
    int GetColumnTextAlign(int col) const override;
    int GetCellImageIndex(int row, int col) const override;
    int GetCellTextAlign(int row, int col) const override;
    std::wstring GetColumnCaption(int col) const override;
    std::wstring GetCellText(int row, int col) const override;

    // Any-value cells are grey.
    bool GetAttr(int row, int col, gridview8::CCellAttr& attr) const override;

protected:
    stack_ptr live_stack() const;
    // The rule's stack item; null without a rule or a stack.
    suppfmt3::shared_pointer<suppfmt3::stack_item_t> stack_item() const;

private:
    rule_ptr m_rule;
};

class CORR_DIALOGS2_API editable_stack_grid_model_t
    : public check_column_t<stack_combo_grid_model_t>,
      public combo_model_t,
      public gridview8::CDefEditingModel,
      public uiframe7::IComboBoxEvents
{
public:
    editable_stack_grid_model_t();
    editable_stack_grid_model_t(const editable_stack_grid_model_t& other);
    editable_stack_grid_model_t& operator=(const editable_stack_grid_model_t& other);
    ~editable_stack_grid_model_t() override;

    using stack_combo_grid_model_t::init;
    // Binds the combo box to the grid's window.
    void init(uicore7::ISysWindow* window) override;

    // Whether a cell is edited through the combo box: the frame has a value
    // for the field, and a line only where its source is used and concrete
    // (a line without its file matches nothing useful).
    bool has_combo(int row, int col) const;

    // The check column is "use in rule".
    std::wstring GetColumnCaption(int col) const override;
    // Frames the rule does not use are grey, as are any-value cells.
    bool GetAttr(int row, int col, gridview8::CCellAttr& attr) const override;
    bool OnDrawCell(uicore7::IPainter* painter, int row, int col,
                    const uicore7::rectangle<double>& rect) override;
    void GetContentRect(int row, int col, uicore7::rectangle<double>& rect) const override;

    uiframe7::CEditControl* GetEditorInt(int row, int col) override;
    void OnUpdateDataInt(int row, int col) override;
    // A pick writes the rule at once, before the editor closes.
    void CBOnChoicItem(uiframe7::CComboBox* sender, int item) override;
    // A cancelled edit puts the frame back as it was when the edit began:
    // a pick may have switched more than its own field (a source takes its
    // line with it).
    void CBOnEditEnd(uiframe7::CComboBox* sender, bool keep_value) override;

private:
    void write_choice(int row, int col, int item);

    int m_edit_row = -1;
    int m_edit_col = -1;
    std::optional<suppfmt3::callstack_frame_t> m_frame_before_edit;
};

} // namespace corr_dialogs2
