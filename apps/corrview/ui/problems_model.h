#pragma once
// Grid models of the problems view: one row per problem of the session
// (type, description, best location, suppressed-by), and the stack pane of
// the current problem (a caption row per stack, then its frames). Neither
// keeps texts of its own: both read the session when the grid asks.
#include "../host/result_session.h"

#include "gridview8/gridview8.h"

#include <vector>

namespace corrview {

class problems_model_t : public gridview8::CDefPlainModel, public gridview8::CDefDrawingModel
{
public:
    enum column_t { col_type, col_description, col_location, col_suppressed_by, col_count };

    explicit problems_model_t(const result_session_t& session);

    // Takes the session's problems again (after open, import or a change of
    // suppressions), keeping the sort order; every problem is shown.
    void refresh();
    // Shows only the problems whose entry is non-zero (one per problem), in
    // the sort order.
    void set_visible(const std::vector<char>& visible);
    // The problem index shown in a row, and back; -1 when out of range.
    int problem_at(int row) const;
    int row_of(size_t problem) const;

    int GetRowCount() const override;
    int GetColumnCount() const override { return col_count; }
    std::wstring GetColumnCaption(int col) const override;
    std::wstring GetCellText(int row, int col) const override;
    void OnSortColumn(int col, gridview8::IHeaderItem::SortingDirection direction) override;
    // Suppressed problems are drawn grey.
    bool GetAttr(int row, int col, gridview8::CCellAttr& attr) const override;

private:
    std::wstring text(size_t problem, int col) const;
    void sort();

    const result_session_t& m_session;
    void take_visible();

    std::vector<size_t> m_sorted;  // every problem, in the sort order
    std::vector<char> m_visible;   // per problem; empty: all
    std::vector<size_t> m_order;   // row -> problem index
    int m_sort_column = -1;
    gridview8::IHeaderItem::SortingDirection m_direction = gridview8::IHeaderItem::sdNone;
};

class stack_model_t : public gridview8::CDefPlainModel, public gridview8::CDefDrawingModel
{
public:
    enum column_t { col_level, col_frame, col_count };

    explicit stack_model_t(const result_session_t& session);

    // Shows the stacks of a problem; -1 shows nothing.
    void show_problem(int problem);
    int shown_problem() const { return m_problem; }
    // The frame shown in a row; null for a caption row or a row out of range.
    const probstore3::frame_t* frame_at(int row) const;
    // The row of the problem's best frame; -1 when it has none.
    int best_frame_row() const;

    int GetRowCount() const override { return static_cast<int>(m_rows.size()); }
    int GetColumnCount() const override { return col_count; }
    std::wstring GetColumnCaption(int col) const override;
    std::wstring GetCellText(int row, int col) const override;
    // Caption rows are bold on a shaded background; the best frame is bold.
    bool GetAttr(int row, int col, gridview8::CCellAttr& attr) const override;

private:
    struct row_t
    {
        int stack;
        int frame; // -1: the stack's caption
    };
    const probstore3::problem_t* problem() const;

    const result_session_t& m_session;
    int m_problem = -1;
    std::vector<row_t> m_rows;
};

} // namespace corrview
