#include "suppressions_view.h"

#include "corr_dialogs2/ui_utils.h"

#include <wx/sizer.h>

namespace corrview {

std::wstring suppression_list_model_t::GetColumnCaption(int col) const
{
    switch (col) {
    case col_name:
        return corr_dialogs2::translate(L"corrview.suppressions.column.name");
    case col_rules:
        return corr_dialogs2::translate(L"corrview.suppressions.column.rules");
    case col_file:
        return corr_dialogs2::translate(L"corrview.suppressions.column.file");
    case col_scope:
        return corr_dialogs2::translate(L"corrview.suppressions.column.scope");
    default:
        return {};
    }
}

std::wstring suppression_list_model_t::GetCellText(int row, int col) const
{
    if (row < 0 || row >= GetRowCount())
        return {};
    const stored_rule_set_t& entry = m_rule_sets[static_cast<size_t>(row)];
    switch (col) {
    case col_name:
        return entry.rule_set->get_name();
    case col_rules:
        return std::to_wstring(entry.rule_set->get_rules().size());
    case col_file:
        return entry.file ? entry.file->get_path() : std::wstring();
    case col_scope:
        return corr_dialogs2::translate(entry.from_project ? L"corrview.suppressions.scope.project"
                                                           : L"corrview.suppressions.scope.result");
    default:
        return {};
    }
}

suppressions_view_t::suppressions_view_t(wxWindow* parent, const result_session_t& session)
    : wxPanel(parent), m_session(session)
{
    SetSizer(new wxBoxSizer(wxVERTICAL));
    auto* control = new uiframe7::CBaseControl(this);
    m_grid = new gridview8::CGrid(control);
    using item = gridview8::IHeaderItem;
    m_header.AddItem(suppression_list_model_t::col_name, item::isVisible, 30, item::sdNone);
    m_header.AddItem(suppression_list_model_t::col_rules, item::isVisible, 8, item::sdNone);
    m_header.AddItem(suppression_list_model_t::col_file, item::isVisible, 50, item::sdNone);
    m_header.AddItem(suppression_list_model_t::col_scope, item::isVisible, 12, item::sdNone);
    m_grid->SetModel(&m_model, &m_header, true);
    m_grid->SetResizingModel(&m_resizing);
    m_grid->SetTooltipModel(&m_tooltips);
    m_grid->SetSelectionMode(gridview8::CGrid::smMulti);
}

suppressions_view_t::~suppressions_view_t()
{
    // The grids borrow the models, which are members: the child windows
    // (and the grids in them) must go first.
    DestroyChildren();
}

void suppressions_view_t::refresh()
{
    m_model.set_rule_sets(m_session.rule_sets());
    m_grid->ClearSelection();
    m_grid->SetCurrentRow(-1);
    m_grid->UpdateRows();
    m_grid->RefreshAll();
}

std::vector<stored_rule_set_t> suppressions_view_t::selected_rule_sets() const
{
    std::vector<int> rows = m_grid->GetSelectedRows();
    if (rows.empty() && m_grid->GetCurrentRow() >= 0)
        rows.push_back(m_grid->GetCurrentRow());
    std::vector<stored_rule_set_t> out;
    for (int row : rows)
        if (row >= 0 && row < m_model.GetRowCount())
            out.push_back(m_model.rule_sets()[static_cast<size_t>(row)]);
    return out;
}

} // namespace corrview
