#pragma once
// The suppressions view: every rule set of the result's and the project's
// suppression files, several selectable, for deleting and viewing stacks.
#include "../host/result_session.h"

#include "corr_dialogs2/suppression_grid_model.h"

#include <wx/panel.h>

#include <functional>
#include <vector>

namespace uiframe7 {
class CBaseControl;
}

namespace corrview {

class suppressions_view_t : public wxPanel
{
public:
    // Told when the view button of a rule's line was pressed.
    using view_stack_t = std::function<void(const corr_dialogs2::rule_ptr& rule)>;

    suppressions_view_t(wxWindow* parent, const result_session_t& session);
    ~suppressions_view_t() override;

    // Lists the session's rule sets again.
    void refresh();
    // The selected rule sets, in row order (the current one when none is selected).
    std::vector<probstore3::rule_set_ptr> selected_rule_sets() const;
    // The first rule of the current row's rule set; null without one.
    corr_dialogs2::rule_ptr current_rule() const;
    void on_view_stack(view_stack_t handler) { m_view_stack = std::move(handler); }

    gridview8::CGrid* grid() const { return m_grid; }
    const corr_dialogs2::suppression_grid_model_t& model() const { return m_model; }
    uiframe7::CBaseControl* grid_control() const { return m_control; }

private:
    std::vector<int> chosen_rows() const;

    const result_session_t& m_session;
    corr_dialogs2::suppression_grid_model_t m_model;
    corr_dialogs2::header_vis_model_t m_header;
    gridview8::CProportionalResizingModelEx m_resizing;
    std::unique_ptr<corr_dialogs2::tooltip_model_t> m_tooltips;
    uiframe7::CBaseControl* m_control = nullptr;
    gridview8::CGrid* m_grid = nullptr;
    view_stack_t m_view_stack;
};

} // namespace corrview
