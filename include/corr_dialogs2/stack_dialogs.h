#pragma once
// Dialogs on a suppression rule's call stack: the editor that chooses which
// frames, and which fields of each frame, a candidate rule matches
// (edit_stack_dlg_t), and the read-only view that can also pick one frame
// (stack_dlg_t).
#include "corr_dialogs2/export.h"
#include "corr_dialogs2/stack_combo_grid_model.h"
#include "corr_dialogs2/rule_grid_models.h"
#include "corr_dialogs2/supp_helpers.h"

#include "shareddlg3/dialog_base.h"

#include <memory>

class wxButton;
class wxPanel;
class wxStaticLine;

namespace corr_dialogs2 {

namespace detail {
class grid_host_t;
}

// Edits one rule in place: a row per frame with a "use in rule" check and a
// combo box per field (the value or any value). Field choices reach the rule
// as they are made; the frame checks on OK. Cancel puts the rule back as it
// was when the dialog opened.
class CORR_DIALOGS2_API edit_stack_dlg_t : public shareddlg3::dialog_base_t
{
public:
    explicit edit_stack_dlg_t(rule_ptr rule);
    ~edit_stack_dlg_t() override;

    rule_ptr get_rule() const { return m_rule; }
    // The best frame of the rule's stack; -1 without a stack.
    int get_best_level() const;
    // Each row's check is whether the rule uses that frame.
    void init_checkboxes();
    // The default selection of the rule (only the best frame, every field),
    // then the checks read back from it.
    void reset_to_default();

    editable_stack_grid_model_t& get_model() { return m_model; }
    gridview8::CGrid* get_grid() const;

protected:
    void save_settings() override;
    void on_init_dialog() override;
    void on_cancel() override;
    void on_update_ui_settings() override;

    void on_reset(wxCommandEvent& event);

private:
    rule_ptr m_rule;
    // The rule's items as they were, for Cancel.
    rule_ptr m_original;
    editable_stack_grid_model_t m_model;
    header_vis_model_t m_header;
    gridview8::CProportionalResizingModelEx m_resizing;
    no_tooltip_model_t m_tooltips;
    std::unique_ptr<detail::grid_host_t> m_grid;

    wxPanel* m_grid_placeholder = nullptr;
    wxButton* m_btn_reset = nullptr;

    wxDECLARE_EVENT_TABLE();
};

// A stack, one frame a line, read-only (view mode) or to choose one frame
// (select mode: OK or a double click takes the one selected row).
class CORR_DIALOGS2_API stack_dlg_t : public shareddlg3::dialog_base_t
{
public:
    stack_dlg_t(stack_ptr stack, bool select_mode, int selection);
    ~stack_dlg_t() override;

    // The chosen frame in select mode; -1 in view mode.
    int get_selection() const;
    bool has_selection() const { return get_selection() != -1; }
    bool is_select_mode() const { return m_select_mode; }

    stack_grid_model_t& get_model() { return m_model; }
    gridview8::CGrid* get_grid() const;

    // Select mode: with exactly one selected row, it becomes the selection
    // and the dialog ends with wxID_OK; otherwise nothing happens.
    void on_select();

protected:
    void on_init_dialog() override;
    bool on_ok() override;
    void on_cancel() override;
    void on_update_ui_settings() override;

private:
    stack_ptr m_stack;
    bool m_select_mode;
    int m_selection;
    stack_grid_model_t m_model;
    header_vis_model_t m_header;
    gridview8::CProportionalResizingModelEx m_resizing;
    no_tooltip_model_t m_tooltips;
    std::unique_ptr<detail::grid_host_t> m_grid;

    wxPanel* m_grid_placeholder = nullptr;
    wxStaticLine* m_staticline4 = nullptr;
    wxButton* m_btn_ok = nullptr;

    wxDECLARE_EVENT_TABLE();
};

} // namespace corr_dialogs2
