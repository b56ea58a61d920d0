#pragma once
// The problems view: a grid of the result's problems (several can be
// selected) over a pane with the stacks of the current problem.
#include "problems_model.h"

#include <wx/panel.h>

#include <functional>
#include <memory>
#include <vector>

class wxSplitterWindow;

namespace uiframe7 {
class CBaseControl;
}

namespace corrview {

class problems_view_t : public wxPanel
{
public:
    problems_view_t(wxWindow* parent, const result_session_t& session);
    ~problems_view_t() override;

    // Reads the session again (new result, changed suppressions); keeps the
    // current problem when it is still there.
    void refresh();
    // Problem indexes of the selected rows, in row order; the current row
    // when nothing is selected.
    std::vector<size_t> selected_problems() const;
    int current_problem() const;
    // Makes the row of a problem current (and the only one selected).
    void show_problem(size_t problem);

    // Told with the frame that becomes current in the stack pane (the best
    // frame when a problem becomes current; null when it has none), and
    // with the frame the user activates there (double click, Enter).
    using frame_callback_t = std::function<void(const probstore3::frame_t*)>;
    void on_frame_selected(frame_callback_t callback) { m_frame_selected = std::move(callback); }
    void on_frame_activated(frame_callback_t callback) { m_frame_activated = std::move(callback); }

    gridview8::CGrid* grid() const { return m_grid; }
    gridview8::CGrid* stack_grid() const { return m_stack_grid; }
    const problems_model_t& model() const { return m_model; }
    const stack_model_t& stack_model() const { return m_stack_model; }
    uiframe7::CBaseControl* grid_control() const { return m_grid_control; }
    uiframe7::CBaseControl* stack_grid_control() const { return m_stack_control; }

private:
    void on_current_row(int row);
    void frame_selected(int stack_row);

    frame_callback_t m_frame_selected;
    frame_callback_t m_frame_activated;
    bool m_moving_to_problem = false;

    const result_session_t& m_session;
    problems_model_t m_model;
    stack_model_t m_stack_model;
    gridview8::CHeaderVisModel m_header;
    gridview8::CHeaderVisModel m_stack_header;
    gridview8::CProportionalResizingModelEx m_resizing;
    gridview8::CProportionalResizingModelEx m_stack_resizing;
    gridview8::CDefTooltipModel m_tooltips;

    wxSplitterWindow* m_splitter = nullptr;
    uiframe7::CBaseControl* m_grid_control = nullptr;
    uiframe7::CBaseControl* m_stack_control = nullptr;
    gridview8::CGrid* m_grid = nullptr;
    gridview8::CGrid* m_stack_grid = nullptr;
};

} // namespace corrview
