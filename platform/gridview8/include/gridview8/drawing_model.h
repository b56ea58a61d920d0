#pragma once
// How cells look beyond their text: colours, weight, custom drawing.
#include "uicore7/geometry.h"

#include <wx/colour.h>

namespace uicore7 {
class IPainter;
}

namespace gridview8 {

// Attributes of one cell; an invalid colour keeps the grid's own.
struct CCellAttr
{
    wxColour text_color;
    wxColour back_color;
    bool bold = false;
    bool grayed = false; // text in the disabled colour
};

// Rectangles are in the viewer's coordinates (those of the row and column
// view models and of mouse events), and the painter is set up for them.
class IDrawingModel
{
public:
    virtual ~IDrawingModel() = default;

    // Fills attr for a cell; true when it set anything.
    virtual bool GetAttr(int row, int col, CCellAttr& attr) const = 0;
    // Called for every painted cell after its background; rect is the whole
    // cell and drawing is clipped to it. Return true when the model drew the
    // cell's content itself; false lets the grid draw image and text.
    virtual bool OnDrawCell(uicore7::IPainter* painter, int row, int col,
                            const uicore7::rectangle<double>& rect) = 0;
    // Where the grid puts a cell's image and text: rect comes in as the cell
    // less its padding and the model may shrink it (to leave room for a button).
    virtual void GetContentRect(int row, int col, uicore7::rectangle<double>& rect) const = 0;
};

// Defaults: no attributes, the grid draws everything, content rect unchanged.
class CDefDrawingModel : public IDrawingModel
{
public:
    bool GetAttr(int row, int col, CCellAttr& attr) const override;
    bool OnDrawCell(uicore7::IPainter* painter, int row, int col,
                    const uicore7::rectangle<double>& rect) override;
    void GetContentRect(int row, int col, uicore7::rectangle<double>& rect) const override;
};

} // namespace gridview8
