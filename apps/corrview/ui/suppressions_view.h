#pragma once
// The suppressions view: every rule set of the result's and the project's
// suppression files, several selectable, for deleting and viewing stacks.
#include "../host/result_session.h"

#include "gridview8/gridview8.h"

#include <wx/panel.h>

#include <vector>

namespace corrview {

// One row per stored rule set: name, rules, file, result or project.
class suppression_list_model_t : public gridview8::CDefPlainModel
{
public:
    enum column_t { col_name, col_rules, col_file, col_scope, col_count };

    void set_rule_sets(std::vector<stored_rule_set_t> rule_sets)
    {
        m_rule_sets = std::move(rule_sets);
    }
    const std::vector<stored_rule_set_t>& rule_sets() const { return m_rule_sets; }

    int GetRowCount() const override { return static_cast<int>(m_rule_sets.size()); }
    int GetColumnCount() const override { return col_count; }
    std::wstring GetColumnCaption(int col) const override;
    std::wstring GetCellText(int row, int col) const override;

private:
    std::vector<stored_rule_set_t> m_rule_sets;
};

class suppressions_view_t : public wxPanel
{
public:
    suppressions_view_t(wxWindow* parent, const result_session_t& session);
    ~suppressions_view_t() override;

    // Lists the session's rule sets again.
    void refresh();
    // The selected rule sets (the current one when none is selected).
    std::vector<stored_rule_set_t> selected_rule_sets() const;

    gridview8::CGrid* grid() const { return m_grid; }
    const suppression_list_model_t& model() const { return m_model; }

private:
    const result_session_t& m_session;
    suppression_list_model_t m_model;
    gridview8::CHeaderVisModel m_header;
    gridview8::CProportionalResizingModelEx m_resizing;
    gridview8::CDefTooltipModel m_tooltips;
    gridview8::CGrid* m_grid = nullptr;
};

} // namespace corrview
