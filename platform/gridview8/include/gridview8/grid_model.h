#pragma once
// The content of a grid: rows, columns, captions, texts, images, alignment.
#include "gridview8/header_vis_model.h"

#include <string>

namespace gridview8 {

// Texts may hold line feeds: each line is drawn on its own (the row view
// model decides how tall a row is). Alignments are uicore7::TextAlign bits
// (33 left and vertically centred, 36 centred). Image indexes point into the
// grid's image list; -1 is no image.
class IGridModel
{
public:
    virtual ~IGridModel() = default;

    virtual int GetRowCount() const = 0;
    virtual int GetColumnCount() const = 0;
    virtual std::wstring GetColumnCaption(int col) const = 0;
    virtual int GetColumnImageIndex(int col) const = 0;
    virtual int GetColumnTextAlign(int col) const = 0;
    virtual std::wstring GetCellText(int row, int col) const = 0;
    virtual int GetCellImageIndex(int row, int col) const = 0;
    virtual int GetCellTextAlign(int row, int col) const = 0;
    // The user clicked a sortable column header; the model reorders its rows.
    virtual void OnSortColumn(int col, IHeaderItem::SortingDirection direction) = 0;
};

// Defaults: no rows or columns, empty texts, no images, captions centred,
// cells left-aligned and vertically centred, sorting ignored.
class CDefPlainModel : public IGridModel
{
public:
    int GetRowCount() const override;
    int GetColumnCount() const override;
    std::wstring GetColumnCaption(int col) const override;
    int GetColumnImageIndex(int col) const override;
    int GetColumnTextAlign(int col) const override;
    std::wstring GetCellText(int row, int col) const override;
    int GetCellImageIndex(int row, int col) const override;
    int GetCellTextAlign(int row, int col) const override;
    void OnSortColumn(int col, IHeaderItem::SortingDirection direction) override;
};

} // namespace gridview8
