#pragma once
// The problems view: the filter bar, a grid of the result's problems that
// pass it (several can be selected) with the summary chart beside it, over
// a pane with the stacks of the current problem.
#include "problems_model.h"

#include "../host/problem_filter.h"

#include <wx/panel.h>

#include <functional>
#include <memory>
#include <vector>

class wxSplitterWindow;

namespace uiframe7 {
class CBaseControl;
}

namespace corrview {

class filter_bar_t;
class summary_chart_t;

class problems_view_t : public wxPanel
{
public:
    problems_view_t(wxWindow* parent, const result_session_t& session);
    ~problems_view_t() override;

    // Reads the session again (new result, changed suppressions); keeps the
    // filter, and the current problem when it still passes.
    void refresh();
    // Lists the problems that pass what the filter bar says now.
    void apply_filter();
    void focus_search();
    // Problem indexes of the selected rows, in row order; the current row
    // when nothing is selected.
    std::vector<size_t> selected_problems() const;
    int current_problem() const;
    // Makes the row of a problem current (and the only one selected).
    void show_problem(size_t problem);

    // Told with the frame that becomes current in the stack pane (the best
    // frame when a problem becomes current; null when it has none), and
    // with the frame the user activates there (double click, Enter) or
    // in the problems list (Enter: the stack pane's current frame).
    using frame_callback_t = std::function<void(const probstore3::frame_t*)>;
    void on_frame_selected(frame_callback_t callback) { m_frame_selected = std::move(callback); }
    void on_frame_activated(frame_callback_t callback) { m_frame_activated = std::move(callback); }

    filter_bar_t* filter_bar() const { return m_bar; }
    summary_chart_t* chart() const { return m_chart; }
    const problem_index_t& index() const { return m_index; }
    const filter_result_t& filter_result() const { return m_result; }
    gridview8::CGrid* grid() const { return m_grid; }
    gridview8::CGrid* stack_grid() const { return m_stack_grid; }
    const problems_model_t& model() const { return m_model; }
    const stack_model_t& stack_model() const { return m_stack_model; }
    uiframe7::CBaseControl* grid_control() const { return m_grid_control; }
    uiframe7::CBaseControl* stack_grid_control() const { return m_stack_control; }

private:
    void on_current_row(int row);
    void frame_selected(int stack_row);
    void rows_changed(int keep_problem);

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
    problem_index_t m_index;
    filter_result_t m_result;

    filter_bar_t* m_bar = nullptr;
    summary_chart_t* m_chart = nullptr;

    wxSplitterWindow* m_splitter = nullptr;
    uiframe7::CBaseControl* m_grid_control = nullptr;
    uiframe7::CBaseControl* m_stack_control = nullptr;
    gridview8::CGrid* m_grid = nullptr;
    gridview8::CGrid* m_stack_grid = nullptr;
};

} // namespace corrview
