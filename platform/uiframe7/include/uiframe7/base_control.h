#pragma once
// The wxWidgets window that hosts a tree of visual elements: it paints them,
// routes mouse, key, focus and scroll events to them, and is their ISysWindow.
#include "uiframe7/visual_element.h"

#include <wx/window.h>

#include <memory>
#include <vector>

namespace uicore7 {
class ISysWindow;
}

namespace uiframe7 {

class CBaseControl : public wxWindow
{
public:
    // With fill_parent the control fills its parent: it is added to the
    // parent's sizer, or to a new vertical box sizer when the parent has none.
    explicit CBaseControl(wxWindow* parent, wxWindowID id = wxID_ANY, bool fill_parent = true,
                          long style = wxBORDER_THEME);
    ~CBaseControl() override;

    // The control's ISysWindow (for models that measure text or convert points).
    uicore7::ISysWindow* GetSysWindow();
    // The control that implements a given ISysWindow, or null.
    static CBaseControl* FromSysWindow(uicore7::ISysWindow* window);

    // Top of the element tree; it always covers the client area.
    CVisualElement* GetRootElement() { return m_root.get(); }
    // Takes ownership of element, puts it under the root and keeps it as large
    // as the client area (a grid created on the control does this itself).
    void AdoptElement(CVisualElement* element);

    // Paints the part `update` of the client area into dc (the paint handler
    // does this; a benchmark or a screenshot may call it with a memory DC).
    void Render(wxDC& dc, const wxRect& update);

    // Who receives the events of the window's vertical scroll bar.
    void SetScrollTarget(CVisualElement* element) { m_scroll_target = element; }
    CVisualElement* GetFocusElement() const { return m_focus; }
    void SetFocusElement(CVisualElement* element);
    CVisualElement* GetCaptureElement() const { return m_capture; }
    void SetCaptureElement(CVisualElement* element);

    // Called when an element leaves the tree, so that no event reaches it.
    void ForgetElement(CVisualElement* element);
    // Keeps the adopted elements as large as the client area.
    void LayoutElements();

private:
    class CSysWindowImpl;

    void on_paint(wxPaintEvent& event);
    void on_size(wxSizeEvent& event);
    void on_mouse(wxMouseEvent& event);
    void on_key_down(wxKeyEvent& event);
    void on_focus(wxFocusEvent& event);
    void on_scroll(wxScrollWinEvent& event);
    void on_capture_lost(wxMouseCaptureLostEvent& event);

    CVisualElement* target_at(uicore7::point<int> window_point);
    template <class F> bool bubble(CVisualElement* from, uicore7::point<int> window_point, F&& f);

    std::unique_ptr<CVisualElement> m_root;
    std::unique_ptr<CSysWindowImpl> m_sys;
    std::vector<std::unique_ptr<CVisualElement>> m_owned;
    CVisualElement* m_scroll_target = nullptr;
    CVisualElement* m_focus = nullptr;
    CVisualElement* m_capture = nullptr;
    CVisualElement* m_hover = nullptr;
    bool m_destroying = false;
};

} // namespace uiframe7
