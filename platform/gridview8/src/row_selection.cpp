#include "gridview8/row_selection.h"

#include <algorithm>
#include <iterator>

namespace gridview8 {

bool CRowSelection::IsSelected(int row) const
{
    auto it = m_ranges.upper_bound(row);
    if (it == m_ranges.begin())
        return false;
    --it;
    return row <= it->second;
}

void CRowSelection::Select(int first, int last, bool select)
{
    if (first > last)
        std::swap(first, last);
    if (last < 0)
        return;
    first = std::max(first, 0);

    // Cut [first, last] out of every range it touches, keeping the outer parts.
    auto it = m_ranges.upper_bound(first);
    if (it != m_ranges.begin())
        --it;
    while (it != m_ranges.end() && it->first <= last) {
        const int a = it->first;
        const int b = it->second;
        if (b < first) {
            ++it;
            continue;
        }
        it = m_ranges.erase(it);
        if (a < first)
            m_ranges.emplace(a, first - 1);
        if (b > last)
            m_ranges.emplace(last + 1, b);
    }
    if (!select)
        return;

    // Insert and merge with neighbours that touch it.
    int lo = first;
    int hi = last;
    auto next = m_ranges.upper_bound(lo);
    if (next != m_ranges.begin()) {
        auto prev = std::prev(next);
        if (prev->second + 1 >= lo) {
            lo = prev->first;
            hi = std::max(hi, prev->second);
            m_ranges.erase(prev);
        }
    }
    next = m_ranges.upper_bound(lo);
    while (next != m_ranges.end() && next->first <= hi + 1) {
        hi = std::max(hi, next->second);
        next = m_ranges.erase(next);
    }
    m_ranges.emplace(lo, hi);
}

void CRowSelection::Truncate(int row_count)
{
    if (row_count <= 0) {
        m_ranges.clear();
        return;
    }
    Select(row_count, std::max(row_count, m_ranges.empty() ? row_count : m_ranges.rbegin()->second),
           false);
}

int CRowSelection::GetCount() const
{
    int n = 0;
    for (const auto& [a, b] : m_ranges)
        n += b - a + 1;
    return n;
}

std::vector<int> CRowSelection::GetRows() const
{
    std::vector<int> rows;
    for (const auto& [a, b] : m_ranges)
        for (int r = a; r <= b; ++r)
            rows.push_back(r);
    return rows;
}

std::vector<std::pair<int, int>> CRowSelection::GetRanges() const
{
    return {m_ranges.begin(), m_ranges.end()};
}

} // namespace gridview8
