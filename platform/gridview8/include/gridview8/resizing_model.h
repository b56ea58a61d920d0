#pragma once
// How the shown columns share the grid's width.
#include <map>
#include <vector>

namespace uiframe7 {
class IContinuousItemViewModel;
}

namespace gridview8 {

class IHeaderVisModel;

class IResizingModel
{
public:
    virtual ~IResizingModel() = default;
    // Sets the count and widths of `columns` to the header's shown columns
    // (leaves, left to right) for a view available_width pixels wide.
    virtual void ResizeColumns(uiframe7::IContinuousItemViewModel& columns,
                               const IHeaderVisModel& header, int available_width) = 0;
};

// Columns share the width in proportion to their weights, filling it exactly.
// "Ex": a column may have a fixed pixel width (SetFixedWidth, or the header
// item state isFixedWidth, whose weight is then its width), and no column
// gets narrower than the minimum width.
class CProportionalResizingModelEx : public IResizingModel
{
public:
    void SetMinColumnWidth(int width);
    int GetMinColumnWidth() const { return m_min_width; }
    // Fixes a model column's width in pixels; a negative width frees it.
    void SetFixedWidth(int column, int width);
    int GetFixedWidth(int column) const; // -1 when free

    void ResizeColumns(uiframe7::IContinuousItemViewModel& columns, const IHeaderVisModel& header,
                       int available_width) override;

    // The arithmetic: widths for columns of the given weights, where fixed[i]
    // >= 0 fixes column i. Free columns share what the fixed ones leave, in
    // proportion to their weights (all alike when every weight is 0), never
    // below min_width, and sum to it exactly when it suffices.
    static std::vector<int> DistributeWidths(const std::vector<int>& weights,
                                             const std::vector<int>& fixed, int available,
                                             int min_width);

private:
    int m_min_width = 16;
    std::map<int, int> m_fixed;
};

} // namespace gridview8
