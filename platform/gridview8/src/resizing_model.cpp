#include "gridview8/resizing_model.h"

#include "gridview8/header_vis_model.h"
#include "uiframe7/item_view_model.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace gridview8 {

void CProportionalResizingModelEx::SetMinColumnWidth(int width)
{
    m_min_width = std::max(0, width);
}

void CProportionalResizingModelEx::SetFixedWidth(int column, int width)
{
    if (width < 0)
        m_fixed.erase(column);
    else
        m_fixed[column] = width;
}

int CProportionalResizingModelEx::GetFixedWidth(int column) const
{
    auto it = m_fixed.find(column);
    return it == m_fixed.end() ? -1 : it->second;
}

std::vector<int> CProportionalResizingModelEx::DistributeWidths(const std::vector<int>& weights,
                                                                const std::vector<int>& fixed,
                                                                int available, int min_width)
{
    const size_t n = weights.size();
    std::vector<int> widths(n, 0);
    std::vector<size_t> free;
    int remaining = std::max(0, available);
    for (size_t i = 0; i < n; ++i) {
        if (i < fixed.size() && fixed[i] >= 0) {
            widths[i] = fixed[i];
            remaining -= fixed[i];
        } else {
            free.push_back(i);
        }
    }
    remaining = std::max(0, remaining);
    min_width = std::max(0, min_width);
    const bool all_zero =
        std::all_of(free.begin(), free.end(), [&](size_t i) { return weights[i] <= 0; });
    auto weight_of = [&](size_t i) { return all_zero ? 1.0 : std::max(0, weights[i]) * 1.0; };

    // Columns whose share falls below the minimum get the minimum and leave
    // the share; the rest split again until every share is large enough.
    while (!free.empty()) {
        double total = 0;
        for (size_t i : free)
            total += weight_of(i);
        std::vector<size_t> small;
        for (size_t i : free)
            if (total <= 0 || remaining * weight_of(i) / total < min_width)
                small.push_back(i);
        if (small.empty())
            break;
        for (size_t i : small) {
            widths[i] = min_width;
            remaining = std::max(0, remaining - min_width);
        }
        free.erase(std::remove_if(free.begin(), free.end(),
                                  [&](size_t i) {
                                      return std::find(small.begin(), small.end(), i) !=
                                             small.end();
                                  }),
                   free.end());
    }
    if (free.empty())
        return widths;

    // Largest remainders: floors first, then the pixels left over go to the
    // columns that lost most in rounding, so the sum is exact.
    double total = 0;
    for (size_t i : free)
        total += weight_of(i);
    std::vector<std::pair<double, size_t>> fractions;
    int used = 0;
    for (size_t i : free) {
        const double exact = remaining * weight_of(i) / total;
        const int whole = static_cast<int>(std::floor(exact));
        widths[i] = whole;
        used += whole;
        fractions.emplace_back(exact - whole, i);
    }
    std::stable_sort(fractions.begin(), fractions.end(),
                     [](const auto& a, const auto& b) { return a.first > b.first; });
    for (int k = 0, left = remaining - used; k < left; ++k)
        ++widths[fractions[static_cast<size_t>(k) % fractions.size()].second];
    return widths;
}

void CProportionalResizingModelEx::ResizeColumns(uiframe7::IContinuousItemViewModel& columns,
                                                 const IHeaderVisModel& header, int available_width)
{
    const int n = header.GetLeafCount();
    std::vector<int> weights(static_cast<size_t>(n));
    std::vector<int> fixed(static_cast<size_t>(n), -1);
    for (int i = 0; i < n; ++i) {
        const IHeaderItem* leaf = header.GetLeaf(i);
        weights[static_cast<size_t>(i)] = leaf->GetWidthWeight();
        const int own = GetFixedWidth(leaf->GetColumn());
        if (own >= 0)
            fixed[static_cast<size_t>(i)] = own;
        else if (leaf->GetState() & IHeaderItem::isFixedWidth)
            fixed[static_cast<size_t>(i)] = leaf->GetWidthWeight();
    }
    const auto widths = DistributeWidths(weights, fixed, available_width, m_min_width);
    columns.SetCount(n);
    for (int i = 0; i < n; ++i)
        columns.SetItemSize(i, widths[static_cast<size_t>(i)]);
}

} // namespace gridview8
