#pragma once
// The column header of a viewer: one or two rows of captions over the columns
// of a continuous item view model. What it shows comes from an IHeaderContent.
#include "uiframe7/visual_element.h"

#include <wx/bitmap.h>

#include <string>
#include <vector>

namespace uiframe7 {

class IContinuousItemViewModel;

// One caption of the header.
struct HeaderCell
{
    int id = -1;   // the content's own number for the cell (a grid: the model column)
    int first = 0; // first and last column spanned (positions in the column view model)
    int last = 0;
    int row = 0; // header row (0 is the top row) and rows spanned
    int row_span = 1;
    std::wstring caption;
    int image = -1; // index in the header's image list, -1 for none
    int align = 36; // uicore7::TextAlign bits
    int sort = 0;   // 0 none, 1 ascending, 2 descending
    bool is_group = false;
};

class IHeaderContent
{
public:
    virtual ~IHeaderContent() = default;
    virtual int GetHeaderRowCount() const = 0;
    virtual std::vector<HeaderCell> GetHeaderCells() const = 0;
    // A click on a cell of a sortable header.
    virtual void OnHeaderCellClick(const HeaderCell& cell) = 0;
};

class CHeader : public CVisualElement
{
public:
    enum Style {
        // Native raised header buttons; clicks do nothing.
        hsRaised = 0,
        // Flat captions on the face colour with a sort arrow on the sorted
        // column; a click on a column caption asks the content to sort by it.
        hsFlatSortable = 1,
    };

    void SetStyle(int style);
    int GetStyle() const { return m_style; }

    void SetContent(IHeaderContent* content);
    void SetColumnViewModel(IContinuousItemViewModel* columns);
    void SetImageList(const std::vector<wxBitmap>* images) { m_images = images; }

    void SetRowHeight(int height);
    int GetRowHeight() const { return m_row_height; }
    int GetRowCount() const;
    // Height the header needs: rows x row height.
    int GetPreferredHeight() const;

    // Index into GetHeaderCells() of the cell at a local point, or -1; fills *cell.
    int HitTestCell(int x, int y, HeaderCell* cell) const;

    void OnPaint(uicore7::IPainter& painter, const uicore7::rectangle<int>& update) override;
    bool OnMouseDown(int x, int y, int keys, uicore7::MouseButton button) override;
    bool OnMouseUp(int x, int y, int keys, uicore7::MouseButton button) override;
    bool OnMouseMove(int x, int y, int keys) override;
    void OnMouseLeave() override;
    void OnCaptureLost() override;

private:
    uicore7::rectangle<int> cell_rect(const HeaderCell& cell) const;
    void paint_cell(uicore7::IPainter& painter, const HeaderCell& cell, bool pressed, bool hot);

    int m_style = hsRaised;
    IHeaderContent* m_content = nullptr;
    IContinuousItemViewModel* m_columns = nullptr;
    const std::vector<wxBitmap>* m_images = nullptr;
    int m_row_height = 22;
    int m_pressed = -1; // cell id pressed in a sortable header
    int m_hot = -1;
};

} // namespace uiframe7
