#pragma once
// Drawn elements: shapes a window paints behind its controls (a framed
// panel's background and border). An ElementAdapter attaches a tree of
// elements to a window and paints the root over the window's client area.
#include <wx/colour.h>
#include <wx/dc.h>
#include <wx/weakref.h>
#include <wx/window.h>

#include <memory>

namespace wxkit1::elements {

class Element
{
public:
    virtual ~Element() = default;
    virtual void Draw(wxDC& dc, const wxRect& area) const = 0;
};

// A filled rectangle, with a border when shown. An invalid background
// colour leaves the area unfilled.
class RectangleElement : public Element
{
public:
    RectangleElement() = default;

    void ShowBorder(bool show) { m_border_shown = show; }
    bool IsBorderShown() const { return m_border_shown; }
    void SetBackgroundColour(const wxColour& c) { m_background = c; }
    const wxColour& GetBackgroundColour() const { return m_background; }
    void SetBorderColour(const wxColour& c) { m_border = c; }
    const wxColour& GetBorderColour() const { return m_border; }
    void SetBorderWidth(int width) { m_border_width = width < 0 ? 0 : width; }
    int GetBorderWidth() const { return m_border_width; }

    void Draw(wxDC& dc, const wxRect& area) const override;

private:
    bool m_border_shown = false;
    wxColour m_background;
    wxColour m_border = *wxBLACK;
    int m_border_width = 1;
};

class ElementAdapter
{
public:
    // Paints on window (which may be destroyed before the adapter).
    explicit ElementAdapter(wxWindow* window);
    ~ElementAdapter();
    ElementAdapter(const ElementAdapter&) = delete;
    ElementAdapter& operator=(const ElementAdapter&) = delete;

    void SetRootElement(std::shared_ptr<Element> root);
    Element* GetRootElement() const { return m_root.get(); }
    wxWindow* GetWindow() const { return m_window.get(); }
    // Has the window paint the elements again.
    void Redraw();

private:
    void OnPaint(wxPaintEvent& event);

    wxWeakRef<wxWindow> m_window;
    std::shared_ptr<Element> m_root;
};

} // namespace wxkit1::elements
