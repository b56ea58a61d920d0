#include "wxkit1/elements.h"

#include <wx/dcclient.h>

namespace wxkit1::elements {

void RectangleElement::Draw(wxDC& dc, const wxRect& area) const
{
    if (area.IsEmpty())
        return;
    const bool border = m_border_shown && m_border_width > 0 && m_border.IsOk();
    dc.SetPen(border ? wxPen(m_border, m_border_width) : *wxTRANSPARENT_PEN);
    dc.SetBrush(m_background.IsOk() ? wxBrush(m_background) : *wxTRANSPARENT_BRUSH);
    if (!border) {
        dc.DrawRectangle(area);
        return;
    }
    // A pen of width w draws centred on the outline: inset so all of it is inside.
    wxRect inner = area;
    inner.Deflate(m_border_width / 2);
    dc.DrawRectangle(inner);
}

ElementAdapter::ElementAdapter(wxWindow* window) : m_window(window)
{
    if (m_window)
        m_window->Bind(wxEVT_PAINT, &ElementAdapter::OnPaint, this);
}

ElementAdapter::~ElementAdapter()
{
    if (m_window)
        m_window->Unbind(wxEVT_PAINT, &ElementAdapter::OnPaint, this);
}

void ElementAdapter::SetRootElement(std::shared_ptr<Element> root)
{
    m_root = std::move(root);
    Redraw();
}

void ElementAdapter::Redraw()
{
    if (m_window)
        m_window->Refresh();
}

void ElementAdapter::OnPaint(wxPaintEvent&)
{
    wxPaintDC dc(m_window.get());
    if (m_root)
        m_root->Draw(dc, wxRect(m_window->GetClientSize()));
}

} // namespace wxkit1::elements
