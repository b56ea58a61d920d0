#include "problems_view.h"

#include "filter_bar.h"
#include "summary_chart.h"

#include <wx/sizer.h>
#include <wx/splitter.h>

namespace corrview {
namespace {

// A panel holding one grid that fills it.
gridview8::CGrid* make_grid(wxWindow* parent, uiframe7::CBaseControl*& control)
{
    auto* panel = new wxPanel(parent);
    panel->SetSizer(new wxBoxSizer(wxVERTICAL));
    control = new uiframe7::CBaseControl(panel);
    return new gridview8::CGrid(control);
}

} // namespace

problems_view_t::problems_view_t(wxWindow* parent, const result_session_t& session)
    : wxPanel(parent), m_session(session), m_model(session), m_stack_model(session)
{
    m_splitter = new wxSplitterWindow(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                      wxSP_LIVE_UPDATE | wxSP_3DSASH);
    m_splitter->SetMinimumPaneSize(60);
    // The problems with the summary beside them, the stacks below.
    auto* top = new wxPanel(m_splitter);
    m_grid = make_grid(top, m_grid_control);
    m_chart = new summary_chart_t(top);
    auto* top_sizer = new wxBoxSizer(wxHORIZONTAL);
    top_sizer->Add(m_grid_control->GetParent(), 1, wxEXPAND);
    top_sizer->Add(m_chart, 0, wxEXPAND | wxLEFT, FromDIP(2));
    m_chart->SetMinSize(FromDIP(wxSize(260, 120)));
    top->SetSizer(top_sizer);
    m_stack_grid = make_grid(m_splitter, m_stack_control);
    // The stack pane starts with room for a dozen frames; the problems get the rest.
    m_splitter->SplitHorizontally(top, m_stack_control->GetParent(), -FromDIP(280));
    m_splitter->SetSashGravity(0.6);

    using item = gridview8::IHeaderItem;
    m_header.AddItem(problems_model_t::col_type, item::isVisible, 18, item::sdNone);
    m_header.AddItem(problems_model_t::col_description, item::isVisible, 40, item::sdNone);
    m_header.AddItem(problems_model_t::col_location, item::isVisible, 30, item::sdNone);
    m_header.AddItem(problems_model_t::col_suppressed_by, item::isVisible, 14, item::sdNone);
    m_grid->SetModel(&m_model, &m_header, true);
    m_grid->SetDrawingModel(&m_model);
    m_grid->SetResizingModel(&m_resizing);
    m_grid->SetTooltipModel(&m_tooltips);
    m_grid->SetSelectionMode(gridview8::CGrid::smMulti);
    m_grid->GetHeader()->SetStyle(1); // sortable captions
    m_grid->CurrentRowChanged().connect([this](int row) { on_current_row(row); });
    // Enter in the list opens the source of the stack pane's current frame.
    m_grid->CellActivated().connect([this](int, int) {
        if (const auto* frame = m_stack_model.frame_at(m_stack_grid->GetCurrentRow());
            frame && m_frame_activated)
            m_frame_activated(frame);
    });

    m_stack_header.AddItem(stack_model_t::col_level, item::isFixedWidth, 48, item::sdNone);
    m_stack_header.AddItem(stack_model_t::col_frame, item::isVisible, 100, item::sdNone);
    m_stack_resizing.SetFixedWidth(stack_model_t::col_level, 48);
    m_stack_grid->SetModel(&m_stack_model, &m_stack_header, true);
    m_stack_grid->SetDrawingModel(&m_stack_model);
    m_stack_grid->SetResizingModel(&m_stack_resizing);
    m_stack_grid->SetTooltipModel(&m_tooltips);
    m_stack_grid->CurrentRowChanged().connect([this](int row) {
        if (!m_moving_to_problem)
            frame_selected(row);
    });
    m_stack_grid->CellActivated().connect([this](int row, int) {
        if (const auto* frame = m_stack_model.frame_at(row); frame && m_frame_activated)
            m_frame_activated(frame);
    });

    m_bar = new filter_bar_t(this);
    m_bar->on_changed([this] { apply_filter(); });
    m_chart->on_click([this](facet_t facet, const std::optional<std::wstring>& name) {
        m_bar->choose(facet, name);
    });

    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(m_bar, 0, wxEXPAND);
    sizer->Add(m_splitter, 1, wxEXPAND);
    SetSizer(sizer);
    refresh();
}

problems_view_t::~problems_view_t()
{
    // The grids borrow the models, which are members: the child windows
    // (and the grids in them) must go first.
    DestroyChildren();
}

void problems_view_t::refresh()
{
    const int current = current_problem();
    m_model.refresh();
    m_index.build(m_session.problems(),
                  [this](size_t i) { return static_cast<bool>(m_session.suppressed_by(i)); });
    const problem_filter_t filter = m_bar->filter();
    m_result = m_index.apply(filter);
    m_model.set_visible(m_result.visible);
    m_bar->show_counts(m_index, m_result);
    m_chart->show(m_index, m_result, filter);
    // Another result may have a problem of the same number: its stacks are new.
    m_stack_model.show_problem(-1);
    rows_changed(current);
}

void problems_view_t::apply_filter()
{
    const int current = current_problem();
    const problem_filter_t filter = m_bar->filter();
    m_result = m_index.apply(filter);
    m_model.set_visible(m_result.visible);
    m_bar->show_counts(m_index, m_result);
    m_chart->show(m_index, m_result, filter);
    rows_changed(current);
}

void problems_view_t::focus_search()
{
    m_bar->focus_search();
}

void problems_view_t::rows_changed(int current)
{
    m_grid->ClearSelection();
    m_grid->UpdateRows();
    m_grid->SetStartRow(0);
    int row = current >= 0 ? m_model.row_of(static_cast<size_t>(current)) : -1;
    // The problem in hand is gone from the list: the first one left takes its place.
    if (row < 0 && current >= 0 && m_model.GetRowCount() > 0)
        row = 0;
    if (row >= 0) {
        m_grid->SetCurrentRow(row);
        m_grid->SelectRow(row, true);
        m_grid->EnsureRowVisible(row);
    } else {
        m_grid->SetCurrentRow(-1);
    }
    on_current_row(m_grid->GetCurrentRow());
    m_grid->RefreshAll();
}

std::vector<size_t> problems_view_t::selected_problems() const
{
    std::vector<int> rows = m_grid->GetSelectedRows();
    if (rows.empty() && m_grid->GetCurrentRow() >= 0)
        rows.push_back(m_grid->GetCurrentRow());
    std::vector<size_t> out;
    for (int row : rows)
        if (const int problem = m_model.problem_at(row); problem >= 0)
            out.push_back(static_cast<size_t>(problem));
    return out;
}

int problems_view_t::current_problem() const
{
    return m_model.problem_at(m_grid->GetCurrentRow());
}

void problems_view_t::show_problem(size_t problem)
{
    const int row = m_model.row_of(problem);
    if (row < 0)
        return;
    m_grid->ClearSelection();
    m_grid->SetCurrentRow(row);
    m_grid->SelectRow(row, true);
    on_current_row(row);
}

void problems_view_t::on_current_row(int row)
{
    // The stack pane (and the source) change only with the problem: a key
    // typed in the search that keeps the current problem leaves them be.
    const int problem = m_model.problem_at(row);
    if (problem >= 0 && problem == m_stack_model.shown_problem())
        return;
    m_stack_model.show_problem(problem);
    m_stack_grid->UpdateRows();
    m_stack_grid->SetStartRow(0);
    // The best frame becomes current, so its source shows at once; told
    // once below even when its row number is the previous problem's.
    m_moving_to_problem = true;
    const int best = m_stack_model.best_frame_row();
    m_stack_grid->ClearSelection();
    m_stack_grid->SetCurrentRow(best);
    if (best >= 0)
        m_stack_grid->SelectRow(best, true);
    m_moving_to_problem = false;
    m_stack_grid->RefreshAll();
    frame_selected(m_stack_grid->GetCurrentRow());
}

void problems_view_t::frame_selected(int stack_row)
{
    const auto* frame = m_stack_model.frame_at(stack_row);
    // A stack's caption row leaves the source as it is.
    if (m_frame_selected && (frame || stack_row < 0))
        m_frame_selected(frame);
}

} // namespace corrview
