#include "problems_model.h"

#include "../host/problem_text.h"

#include "corr_dialogs2/ui_utils.h"
#include "platkit/strings/convert.h"

#include <wx/settings.h>

#include <algorithm>
#include <numeric>

namespace corrview {

problems_model_t::problems_model_t(const result_session_t& session) : m_session(session)
{
    refresh();
}

void problems_model_t::refresh()
{
    m_sorted.resize(m_session.problems().size());
    std::iota(m_sorted.begin(), m_sorted.end(), size_t(0));
    m_visible.clear();
    sort();
}

void problems_model_t::set_visible(const std::vector<char>& visible)
{
    m_visible = visible;
    take_visible();
}

void problems_model_t::take_visible()
{
    if (m_visible.size() != m_sorted.size()) {
        m_order = m_sorted;
        return;
    }
    // A keystroke of the search lands here: one pass, no sorting.
    m_order.clear();
    for (size_t problem : m_sorted)
        if (m_visible[problem])
            m_order.push_back(problem);
}

int problems_model_t::problem_at(int row) const
{
    return row >= 0 && static_cast<size_t>(row) < m_order.size()
               ? static_cast<int>(m_order[static_cast<size_t>(row)])
               : -1;
}

int problems_model_t::row_of(size_t problem) const
{
    const auto at = std::find(m_order.begin(), m_order.end(), problem);
    return at == m_order.end() ? -1 : static_cast<int>(at - m_order.begin());
}

int problems_model_t::GetRowCount() const
{
    return static_cast<int>(m_order.size());
}

std::wstring problems_model_t::GetColumnCaption(int col) const
{
    switch (col) {
    case col_type:
        return corr_dialogs2::translate(L"corrview.problems.column.type");
    case col_description:
        return corr_dialogs2::translate(L"corrview.problems.column.description");
    case col_location:
        return corr_dialogs2::translate(L"corrview.problems.column.location");
    case col_suppressed_by:
        return corr_dialogs2::translate(L"corrview.problems.column.suppressed_by");
    default:
        return {};
    }
}

std::wstring problems_model_t::text(size_t problem, int col) const
{
    const auto& list = m_session.problems();
    if (problem >= list.size())
        return {};
    const auto& p = list[problem];
    switch (col) {
    case col_type:
        return problem_type_text(p);
    case col_description:
        return problem_description_text(p);
    case col_location:
        return best_location_text(p);
    case col_suppressed_by:
        return rule_set_name(m_session.suppressed_by(problem));
    default:
        return {};
    }
}

std::wstring problems_model_t::GetCellText(int row, int col) const
{
    const int problem = problem_at(row);
    return problem < 0 ? std::wstring() : text(static_cast<size_t>(problem), col);
}

void problems_model_t::OnSortColumn(int col, gridview8::IHeaderItem::SortingDirection direction)
{
    m_sort_column = col;
    m_direction = direction;
    sort();
}

void problems_model_t::sort()
{
    if (m_sort_column < 0 || m_direction == gridview8::IHeaderItem::sdNone) {
        std::sort(m_sorted.begin(), m_sorted.end());
        take_visible();
        return;
    }
    std::vector<std::wstring> keys(m_session.problems().size());
    for (size_t i = 0; i < keys.size(); ++i)
        keys[i] = text(i, m_sort_column);
    const bool descending = m_direction == gridview8::IHeaderItem::sdDescending;
    // Stable, so that equal keys stay in problem order.
    std::stable_sort(m_sorted.begin(), m_sorted.end(), [&](size_t a, size_t b) {
        return descending ? keys[b] < keys[a] : keys[a] < keys[b];
    });
    take_visible();
}

bool problems_model_t::GetAttr(int row, int, gridview8::CCellAttr& attr) const
{
    const int problem = problem_at(row);
    if (problem < 0 || !m_session.suppressed_by(static_cast<size_t>(problem)))
        return false;
    attr.grayed = true;
    return true;
}

stack_model_t::stack_model_t(const result_session_t& session) : m_session(session) {}

const probstore3::problem_t* stack_model_t::problem() const
{
    const auto& list = m_session.problems();
    return m_problem >= 0 && static_cast<size_t>(m_problem) < list.size()
               ? &list[static_cast<size_t>(m_problem)]
               : nullptr;
}

void stack_model_t::show_problem(int problem_index)
{
    m_problem = problem_index;
    m_rows.clear();
    const auto* p = problem();
    if (!p)
        return;
    for (size_t s = 0; s < p->stacks.size(); ++s) {
        m_rows.push_back({static_cast<int>(s), -1});
        for (size_t f = 0; f < p->stacks[s].frames.size(); ++f)
            m_rows.push_back({static_cast<int>(s), static_cast<int>(f)});
    }
}

const probstore3::frame_t* stack_model_t::frame_at(int row) const
{
    const auto* p = problem();
    if (!p || row < 0 || static_cast<size_t>(row) >= m_rows.size())
        return nullptr;
    const row_t& r = m_rows[static_cast<size_t>(row)];
    if (r.frame < 0)
        return nullptr;
    return &p->stacks[static_cast<size_t>(r.stack)].frames[static_cast<size_t>(r.frame)];
}

int stack_model_t::best_frame_row() const
{
    const auto* p = problem();
    if (!p)
        return -1;
    for (size_t row = 0; row < m_rows.size(); ++row)
        if (m_rows[row].stack == 0 && m_rows[row].frame == p->best_level)
            return static_cast<int>(row);
    return -1;
}

std::wstring stack_model_t::GetColumnCaption(int col) const
{
    if (col == col_level)
        return corr_dialogs2::translate(L"corrview.stack.column.level");
    if (col == col_frame)
        return corr_dialogs2::translate(L"corrview.stack.column.frame");
    return {};
}

std::wstring stack_model_t::GetCellText(int row, int col) const
{
    const auto* p = problem();
    if (!p || row < 0 || static_cast<size_t>(row) >= m_rows.size())
        return {};
    const row_t& r = m_rows[static_cast<size_t>(row)];
    const auto& stack = p->stacks[static_cast<size_t>(r.stack)];
    if (r.frame < 0) {
        if (col != col_frame)
            return {};
        // The main stack has no title of its own in the analysers' output.
        return stack.title.empty() ? corr_dialogs2::translate(L"corrview.stack.main")
                                   : platkit::strings::utf8_to_wide(stack.title);
    }
    if (col == col_level)
        return std::to_wstring(r.frame);
    return frame_text(stack.frames[static_cast<size_t>(r.frame)]);
}

bool stack_model_t::GetAttr(int row, int, gridview8::CCellAttr& attr) const
{
    const auto* p = problem();
    if (!p || row < 0 || static_cast<size_t>(row) >= m_rows.size())
        return false;
    const row_t& r = m_rows[static_cast<size_t>(row)];
    if (r.frame < 0) {
        attr.bold = true;
        attr.back_color = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE);
        return true;
    }
    if (r.stack == 0 && r.frame == p->best_level) {
        attr.bold = true;
        return true;
    }
    return false;
}

} // namespace corrview
