#pragma once
// Tooltips of the grid's cells, asked as the pointer moves over them.
#include <string>

namespace gridview8 {

// The grid asks GetTooltipText(row, col) for the cell under the pointer; a
// non-empty text is shown. Otherwise, when HasTooltip(col) holds, the cell's
// own text is shown if it does not fit in the cell. A model that needs the
// exact pointer position (a button inside a cell) reads it itself:
// CGrid::GetMousePosition() gives it in the viewer's coordinates.
class ITooltipModel
{
public:
    virtual ~ITooltipModel() = default;
    virtual bool HasTooltip(int col) const = 0;
    virtual std::wstring GetTooltipText(int row, int col) = 0;
};

// Every column shows the text of a cut-off cell; no texts of its own.
class CDefTooltipModel : public ITooltipModel
{
public:
    bool HasTooltip(int col) const override;
    std::wstring GetTooltipText(int row, int col) override;
};

} // namespace gridview8
