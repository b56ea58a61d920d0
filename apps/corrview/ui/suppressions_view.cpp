#include "suppressions_view.h"

#include "corr_dialogs2/ui_utils.h"

#include <wx/sizer.h>

namespace corrview {

suppressions_view_t::suppressions_view_t(wxWindow* parent, const result_session_t& session)
    : wxPanel(parent), m_session(session)
{
    SetSizer(new wxBoxSizer(wxVERTICAL));
    m_control = new uiframe7::CBaseControl(this);
    m_grid = new gridview8::CGrid(m_control);
    // The order the grid models want: window, button, header, then the grid.
    m_model.set_window(m_control->GetSysWindow());
    m_model.enable_button(true);
    m_model.set_button_text(corr_dialogs2::translate(L"corrview.suppressions.view"));
    m_model.init_header_vis_model(m_header);
    m_grid->SetModel(&m_model, &m_header, true);
    m_grid->SetDrawingModel(&m_model);
    m_grid->GetViewer()->AddEventHandler(&m_model);
    m_grid->SetResizingModel(&m_resizing);
    m_grid->GetHeader()->SetStyle(1);
    m_tooltips = std::make_unique<corr_dialogs2::tooltip_model_t>(m_grid, &m_model);
    m_grid->SetTooltipModel(m_tooltips.get());
    m_grid->SetSelectionMode(gridview8::CGrid::smMulti);
    m_model.button_clicked().connect([this](int row, int rule) {
        if (m_view_stack)
            if (const auto r = m_model.get_rule(row, rule))
                m_view_stack(r);
    });
}

suppressions_view_t::~suppressions_view_t()
{
    // The grid borrows the models, which are members: the child windows (and
    // the grid in them) must go first.
    DestroyChildren();
}

void suppressions_view_t::refresh()
{
    std::vector<probstore3::rule_set_ptr> sets;
    for (const auto& stored : m_session.rule_sets())
        sets.push_back(stored.rule_set);
    m_model.clear();
    m_model.add_rules(sets);
    m_grid->ClearSelection();
    m_grid->SetCurrentRow(-1);
    m_grid->UpdateRows();
    m_grid->RefreshAll();
}

std::vector<int> suppressions_view_t::chosen_rows() const
{
    std::vector<int> rows = m_grid->GetSelectedRows();
    if (rows.empty() && m_grid->GetCurrentRow() >= 0)
        rows.push_back(m_grid->GetCurrentRow());
    return rows;
}

std::vector<probstore3::rule_set_ptr> suppressions_view_t::selected_rule_sets() const
{
    std::vector<probstore3::rule_set_ptr> out;
    for (int row : chosen_rows())
        if (auto set = m_model.get_rule_set(row))
            out.push_back(set);
    return out;
}

corr_dialogs2::rule_ptr suppressions_view_t::current_rule() const
{
    const auto rows = chosen_rows();
    return rows.empty() ? corr_dialogs2::rule_ptr() : m_model.get_rule(rows.front(), 0);
}

} // namespace corrview
