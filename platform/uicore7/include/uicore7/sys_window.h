#pragma once
// The native window under a tree of visual elements, as models and views see it.
#include "uicore7/geometry.h"

#include <string>

class wxWindow;

namespace uicore7 {

class IPainter;

class ISysWindow
{
public:
    virtual ~ISysWindow() = default;

    // A painter for measuring text in the window's font, owned by the window
    // (do not draw with it; views get a painting painter when they paint).
    virtual IPainter* GetPainter() = 0;

    virtual point<int> ClientToScreen(point<int> client) const = 0;
    virtual point<int> ScreenToClient(point<int> screen) const = 0;
    // Pointer position in desktop coordinates.
    virtual point<int> GetMousePosition() const = 0;
    virtual size<int> GetClientSize() const = 0;

    // Schedules a repaint of the whole window or of a rectangle of its client area.
    virtual void Refresh() = 0;
    virtual void RefreshRect(const rectangle<int>& client_rect) = 0;
    // Paints what is pending now.
    virtual void Update() = 0;

    virtual void SetToolTipText(const std::wstring& text) = 0; // empty removes it
    virtual std::wstring GetToolTipText() const = 0;

    // Vertical scroll bar in items: position of the first shown item, items on
    // the last page, total items. range <= page hides the bar.
    virtual void SetVScrollInfo(int position, int page, int range) = 0;

    virtual void SetFocus() = 0;
    virtual bool HasFocus() const = 0;

    virtual wxWindow* GetNativeWindow() = 0;
};

} // namespace uicore7
