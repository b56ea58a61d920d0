#pragma once
// The selected rows of a grid, kept as disjoint ranges: selecting 100,000
// rows costs one entry, not 100,000.
#include <map>
#include <vector>

namespace gridview8 {

class CRowSelection
{
public:
    void Clear() { m_ranges.clear(); }
    bool Empty() const { return m_ranges.empty(); }
    bool IsSelected(int row) const;
    // Selects or deselects rows first..last (inclusive; any order).
    void Select(int first, int last, bool select);
    void Toggle(int row) { Select(row, row, !IsSelected(row)); }
    // Drops rows at or after row_count.
    void Truncate(int row_count);
    int GetCount() const;
    std::vector<int> GetRows() const;
    // Ranges as (first, last) pairs, in order.
    std::vector<std::pair<int, int>> GetRanges() const;

private:
    std::map<int, int> m_ranges; // first -> last, disjoint and not touching
};

} // namespace gridview8
