#pragma once
// A node of the tree of visual elements that a CBaseControl hosts: a
// rectangle of the window that paints itself and takes mouse and key input.
#include "uicore7/geometry.h"
#include "uicore7/input.h"

#include <vector>

namespace uicore7 {
class IPainter;
class ISysWindow;
} // namespace uicore7

namespace uiframe7 {

class CBaseControl;

// What a scroll bar asks for (OnScroll).
enum ScrollAction {
    saTop,
    saBottom,
    saLineUp,
    saLineDown,
    saPageUp,
    saPageDown,
    saThumbTrack,
    saThumbRelease,
};

// Parents do not own their children: whoever created an element destroys it
// (the hosting control owns the elements adopted with AdoptElement). An element
// leaves its parent when it is destroyed, and a destroyed parent leaves its
// children without a parent, so either may go first.
class CVisualElement
{
public:
    enum ReParentFlags {
        rpDefault = 0,
        // Leave quietly: no repaint of the old place, and an element that is
        // editing stops without reporting a value (used before destruction).
        rpSilent = 1,
    };

    CVisualElement() = default;
    virtual ~CVisualElement();
    CVisualElement(const CVisualElement&) = delete;
    CVisualElement& operator=(const CVisualElement&) = delete;

    // Moves the element under new_parent (appended last), or detaches it when
    // new_parent is null.
    virtual void ReParent(CVisualElement* new_parent, int flags);
    CVisualElement* GetParent() const { return m_parent; }
    const std::vector<CVisualElement*>& GetChildren() const { return m_children; }

    // The hosting control and its native window; null while detached.
    CBaseControl* GetHost() const;
    uicore7::ISysWindow* GetSysWindow() const;

    // Position in the client area of the hosting window.
    void SetRect(const uicore7::rectangle<int>& window_rect);
    const uicore7::rectangle<int>& GetRect() const { return m_rect; }
    // (0, 0, width, height): the element's own coordinates.
    uicore7::rectangle<int> GetLocalRect() const;

    void Show(bool show);
    bool IsShown() const { return m_shown; }

    uicore7::point<int> WindowToLocal(uicore7::point<int> p) const;
    uicore7::point<int> LocalToWindow(uicore7::point<int> p) const;
    uicore7::point<int> ScreenToLocal(uicore7::point<int> p) const;
    uicore7::point<int> LocalToScreen(uicore7::point<int> p) const;

    void Refresh();
    void RefreshLocalRect(const uicore7::rectangle<int>& local);

    // Keyboard focus inside the hosting window, and mouse capture.
    void SetFocus();
    bool HasFocus() const;
    void CaptureMouse();
    void ReleaseMouse();
    bool HasCapture() const;

    // Deepest shown element at a point of the window (this one or a child), or null.
    virtual CVisualElement* HitTestElement(uicore7::point<int> window_point);

    // Input and painting, in the element's own coordinates. An input hook
    // returns true when it used the event; otherwise the parent gets it.
    // painter has its origin at the element's top-left corner and is clipped to it.
    virtual void OnPaint(uicore7::IPainter& painter, const uicore7::rectangle<int>& update);
    virtual void OnLayout() {}
    virtual bool OnMouseDown(int x, int y, int keys, uicore7::MouseButton button);
    virtual bool OnMouseUp(int x, int y, int keys, uicore7::MouseButton button);
    virtual bool OnDoubleClick(int x, int y, int keys, uicore7::MouseButton button);
    virtual bool OnMouseMove(int x, int y, int keys);
    // lines > 0 when the wheel turns away from the user (towards the top).
    virtual bool OnMouseWheel(int x, int y, int keys, int lines);
    virtual void OnMouseLeave() {}
    // key_code is a wxWidgets key code (WXK_..., or the character).
    virtual bool OnKeyDown(int key_code, int keys);
    virtual void OnFocusChanged(bool /*focused*/) {}
    virtual bool OnScroll(ScrollAction action, int position);
    virtual void OnCaptureLost() {}

private:
    friend class CBaseControl;
    void detach_children();

    CVisualElement* m_parent = nullptr;
    CBaseControl* m_host = nullptr; // set on the root element of a control only
    std::vector<CVisualElement*> m_children;
    uicore7::rectangle<int> m_rect;
    bool m_shown = true;
};

} // namespace uiframe7
