#pragma once
// The painter: everything a view or a model draws goes through it.
#include "uicore7/geometry.h"

#include <wx/bitmap.h>
#include <wx/colour.h>

#include <string>
#include <vector>

class wxDC;
class wxWindow;

namespace uicore7 {

// Text alignment: one horizontal bit or'ed with one vertical bit. A value
// without a horizontal bit aligns left; without a vertical bit, centres
// vertically. So 33 is "left, vertically centred" and 36 "centred".
enum TextAlign : int {
    taLeft = 0x01,
    taRight = 0x02,
    taHCenter = 0x04,
    taTop = 0x08,
    taBottom = 0x10,
    taVCenter = 0x20,

    taLeftVCenter = taLeft | taVCenter,   // 33
    taRightVCenter = taRight | taVCenter, // 34
    taCenter = taHCenter | taVCenter,     // 36
    taLeftTop = taLeft | taTop,           // 9
};

// Bits of the state argument of DrawButton.
enum ButtonState : int {
    bsNormal = 0,
    bsPressed = 0x01,
    bsDisabled = 0x02,
    bsHot = 0x04, // the pointer is over it
    bsFocused = 0x08,
};

class IPainter
{
public:
    virtual ~IPainter() = default;

    // Size of text in the current font; a text with line feeds measures as
    // its widest line by the sum of its lines (a trailing line feed adds no line).
    virtual size<int> GetTextExtent(const std::wstring& text) = 0;
    virtual int GetLineHeight() = 0;
    // Draws text inside rect, aligned (TextAlign bits) and clipped to rect;
    // each line of a multi-line text is aligned on its own. A line too long
    // for the rectangle ends in an ellipsis.
    virtual void DrawText(const std::wstring& text, const rectangle<double>& rect, int align) = 0;

    virtual void SetTextColor(const wxColour& colour) = 0;
    virtual void SetLineColor(const wxColour& colour) = 0;
    virtual void SetFillColor(const wxColour& colour) = 0;
    virtual void SetBold(bool bold) = 0;

    virtual void DrawLine(double x1, double y1, double x2, double y2) = 0;
    // Outline in the line colour, inside the rectangle.
    virtual void DrawRectangle(const rectangle<double>& rect) = 0;
    // Fill in the fill colour, no outline.
    virtual void FillRectangle(const rectangle<double>& rect) = 0;
    virtual void FillPolygon(const std::vector<point<double>>& points) = 0;
    virtual void DrawFocusRect(const rectangle<double>& rect) = 0;
    // A raised push-button frame with its caption centred (bsPressed sinks it).
    virtual void DrawButton(const rectangle<double>& rect, const std::wstring& caption,
                            int state) = 0;

    // Images come from the list the owning view set (a grid's image list).
    virtual void SetImageList(const std::vector<wxBitmap>* images) = 0;
    virtual int GetImageCount() = 0;
    // Size of the first image; (0, 0) without images.
    virtual size<int> GetImageSize() = 0;
    // Draws image `index` with its top-left corner at (x, y); an index out of
    // range draws nothing.
    virtual void DrawImage(int index, double x, double y) = 0;

    // Drawing is clipped to the intersection of the pushed rectangles.
    virtual void PushClip(const rectangle<double>& rect) = 0;
    virtual void PopClip() = 0;
    // Logical (0, 0) sits at this point of the device; views set it to their
    // own top-left corner before they paint.
    virtual void SetOrigin(double x, double y) = 0;
    virtual point<double> GetOrigin() = 0;

    // The device context underneath, for drawing the interface does not cover.
    virtual wxDC* GetDC() = 0;
};

} // namespace uicore7
