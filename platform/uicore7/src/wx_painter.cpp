#include "uicore7/wx_painter.h"

#include <wx/control.h>
#include <wx/dc.h>
#include <wx/renderer.h>
#include <wx/settings.h>
#include <wx/window.h>

#include <cmath>

namespace uicore7 {
namespace {

// Splits at line feeds; a trailing line feed ends the last line rather than
// starting an empty one, and carriage returns are dropped.
std::vector<wxString> split_lines(const std::wstring& text)
{
    std::vector<wxString> lines;
    std::wstring current;
    for (wchar_t c : text) {
        if (c == L'\n') {
            lines.emplace_back(current);
            current.clear();
        } else if (c != L'\r') {
            current.push_back(c);
        }
    }
    if (!current.empty() || lines.empty())
        lines.emplace_back(current);
    return lines;
}

int to_device(double v)
{
    return static_cast<int>(std::lround(v));
}

} // namespace

CWxPainter::CWxPainter(wxDC& dc, wxWindow* window) : m_dc(dc), m_window(window)
{
    m_normal_font = dc.GetFont();
    if (!m_normal_font.IsOk() && window)
        m_normal_font = window->GetFont();
    if (!m_normal_font.IsOk())
        m_normal_font = *wxNORMAL_FONT;
    m_dc.SetFont(m_normal_font);
    m_dc.SetBackgroundMode(wxBRUSHSTYLE_TRANSPARENT);
    m_dc.SetTextForeground(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT));
}

CWxPainter::~CWxPainter()
{
    if (!m_clips.empty())
        m_dc.DestroyClippingRegion();
}

wxRect CWxPainter::device_rect(const rectangle<double>& r) const
{
    const int l = to_device(r.left + m_origin_x);
    const int t = to_device(r.top + m_origin_y);
    const int rr = to_device(r.right + m_origin_x);
    const int b = to_device(r.bottom + m_origin_y);
    return wxRect(l, t, std::max(0, rr - l), std::max(0, b - t));
}

size<int> CWxPainter::GetTextExtent(const std::wstring& text)
{
    const auto lines = split_lines(text);
    int width = 0;
    for (const auto& line : lines) {
        if (line.empty())
            continue;
        width = std::max(width, m_dc.GetTextExtent(line).x);
    }
    return {width, GetLineHeight() * static_cast<int>(lines.size())};
}

int CWxPainter::GetLineHeight()
{
    if (m_line_height < 0)
        m_line_height = m_dc.GetCharHeight();
    return m_line_height;
}

void CWxPainter::DrawText(const std::wstring& text, const rectangle<double>& rect, int align)
{
    if (text.empty() || rect.empty())
        return;
    const auto lines = split_lines(text);
    const int line_height = GetLineHeight();
    const wxRect box = device_rect(rect);
    const int block = line_height * static_cast<int>(lines.size());

    int y = box.y + (box.height - block) / 2;
    if (align & taTop)
        y = box.y;
    else if (align & taBottom)
        y = box.GetBottom() + 1 - block;

    // Lines are ellipsised to the width, so only a block taller than the box
    // can spill out of it.
    const bool clip = block > box.height;
    if (clip)
        PushClip(rect);
    for (const auto& line : lines) {
        if (y + line_height > box.y && y < box.y + box.height && !line.empty()) {
            wxString shown = line;
            int width = m_dc.GetTextExtent(shown).x;
            if (width > box.width) {
                shown = wxControl::Ellipsize(line, m_dc, wxELLIPSIZE_END, box.width);
                width = m_dc.GetTextExtent(shown).x;
            }
            int x = box.x;
            if (align & taRight)
                x = box.x + box.width - width;
            else if (align & taHCenter)
                x = box.x + (box.width - width) / 2;
            m_dc.DrawText(shown, x, y);
        }
        y += line_height;
    }
    if (clip)
        PopClip();
}

void CWxPainter::SetTextColor(const wxColour& colour)
{
    m_dc.SetTextForeground(colour);
}

void CWxPainter::SetLineColor(const wxColour& colour)
{
    m_dc.SetPen(wxPen(colour));
}

void CWxPainter::SetFillColor(const wxColour& colour)
{
    m_dc.SetBrush(wxBrush(colour));
}

void CWxPainter::SetBold(bool bold)
{
    if (bold == m_bold)
        return;
    m_bold = bold;
    if (bold && !m_bold_font.IsOk())
        m_bold_font = m_normal_font.Bold();
    m_dc.SetFont(bold ? m_bold_font : m_normal_font);
    m_line_height = -1;
}

void CWxPainter::DrawLine(double x1, double y1, double x2, double y2)
{
    m_dc.DrawLine(to_device(x1 + m_origin_x), to_device(y1 + m_origin_y),
                  to_device(x2 + m_origin_x), to_device(y2 + m_origin_y));
}

void CWxPainter::DrawRectangle(const rectangle<double>& rect)
{
    const wxBrush old = m_dc.GetBrush();
    m_dc.SetBrush(*wxTRANSPARENT_BRUSH);
    m_dc.DrawRectangle(device_rect(rect));
    m_dc.SetBrush(old);
}

void CWxPainter::FillRectangle(const rectangle<double>& rect)
{
    const wxPen old = m_dc.GetPen();
    m_dc.SetPen(*wxTRANSPARENT_PEN);
    m_dc.DrawRectangle(device_rect(rect));
    m_dc.SetPen(old);
}

void CWxPainter::FillPolygon(const std::vector<point<double>>& points)
{
    if (points.size() < 3)
        return;
    std::vector<wxPoint> device;
    device.reserve(points.size());
    for (const auto& p : points)
        device.emplace_back(to_device(p.x + m_origin_x), to_device(p.y + m_origin_y));
    const wxPen old = m_dc.GetPen();
    m_dc.SetPen(*wxTRANSPARENT_PEN);
    m_dc.DrawPolygon(static_cast<int>(device.size()), device.data());
    m_dc.SetPen(old);
}

void CWxPainter::DrawFocusRect(const rectangle<double>& rect)
{
    const wxRect r = device_rect(rect);
    if (m_window) {
        wxRendererNative::Get().DrawFocusRect(m_window, m_dc, r);
        return;
    }
    const wxPen old = m_dc.GetPen();
    const wxBrush old_brush = m_dc.GetBrush();
    m_dc.SetPen(wxPen(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT), 1, wxPENSTYLE_DOT));
    m_dc.SetBrush(*wxTRANSPARENT_BRUSH);
    m_dc.DrawRectangle(r);
    m_dc.SetPen(old);
    m_dc.SetBrush(old_brush);
}

void CWxPainter::DrawButton(const rectangle<double>& rect, const std::wstring& caption, int state)
{
    const wxRect r = device_rect(rect);
    if (r.IsEmpty())
        return;
    if (m_window) {
        int flags = 0;
        if (state & bsPressed)
            flags |= wxCONTROL_PRESSED;
        if (state & bsDisabled)
            flags |= wxCONTROL_DISABLED;
        if (state & bsHot)
            flags |= wxCONTROL_CURRENT;
        if (state & bsFocused)
            flags |= wxCONTROL_FOCUSED;
        wxRendererNative::Get().DrawPushButton(m_window, m_dc, r, flags);
    } else {
        // A classic raised frame: light top-left edges, dark bottom-right.
        const wxPen old = m_dc.GetPen();
        const wxBrush old_brush = m_dc.GetBrush();
        m_dc.SetPen(*wxTRANSPARENT_PEN);
        m_dc.SetBrush(wxBrush(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE)));
        m_dc.DrawRectangle(r);
        const bool sunk = (state & bsPressed) != 0;
        const wxColour light = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNHIGHLIGHT);
        const wxColour dark = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNSHADOW);
        m_dc.SetPen(wxPen(sunk ? dark : light));
        m_dc.DrawLine(r.GetLeft(), r.GetBottom(), r.GetLeft(), r.GetTop());
        m_dc.DrawLine(r.GetLeft(), r.GetTop(), r.GetRight(), r.GetTop());
        m_dc.SetPen(wxPen(sunk ? light : dark));
        m_dc.DrawLine(r.GetRight(), r.GetTop(), r.GetRight(), r.GetBottom());
        m_dc.DrawLine(r.GetRight(), r.GetBottom(), r.GetLeft() - 1, r.GetBottom());
        m_dc.SetPen(old);
        m_dc.SetBrush(old_brush);
    }
    if (!caption.empty()) {
        const wxColour old_text = m_dc.GetTextForeground();
        m_dc.SetTextForeground(wxSystemSettings::GetColour(
            (state & bsDisabled) ? wxSYS_COLOUR_GRAYTEXT : wxSYS_COLOUR_BTNTEXT));
        rectangle<double> inner = rect;
        inner.inflate(-2, -1);
        if (state & bsPressed)
            inner.offset(1, 1);
        DrawText(caption, inner, taCenter);
        m_dc.SetTextForeground(old_text);
    }
}

void CWxPainter::SetImageList(const std::vector<wxBitmap>* images)
{
    m_images = images;
}

int CWxPainter::GetImageCount()
{
    return m_images ? static_cast<int>(m_images->size()) : 0;
}

size<int> CWxPainter::GetImageSize()
{
    if (!m_images || m_images->empty() || !m_images->front().IsOk())
        return {0, 0};
    const auto& bmp = m_images->front();
    return {bmp.GetWidth(), bmp.GetHeight()};
}

void CWxPainter::DrawImage(int index, double x, double y)
{
    if (!m_images || index < 0 || index >= static_cast<int>(m_images->size()))
        return;
    const wxBitmap& bmp = (*m_images)[static_cast<size_t>(index)];
    if (bmp.IsOk())
        m_dc.DrawBitmap(bmp, to_device(x + m_origin_x), to_device(y + m_origin_y), true);
}

void CWxPainter::PushClip(const rectangle<double>& rect)
{
    wxRect r = device_rect(rect);
    if (!m_clips.empty())
        r.Intersect(m_clips.back());
    if (r.width < 0 || r.height < 0)
        r = wxRect(r.x, r.y, 0, 0);
    m_clips.push_back(r);
    apply_clip();
}

void CWxPainter::PopClip()
{
    if (m_clips.empty())
        return;
    m_clips.pop_back();
    apply_clip();
}

void CWxPainter::apply_clip()
{
    m_dc.DestroyClippingRegion();
    if (m_clips.empty())
        return;
    const wxRect& r = m_clips.back();
    // An empty region would mean "no clipping" to some ports; clip to a
    // single pixel outside the drawing instead.
    if (r.IsEmpty())
        m_dc.SetClippingRegion(wxRect(-2, -2, 1, 1));
    else
        m_dc.SetClippingRegion(r);
}

void CWxPainter::SetOrigin(double x, double y)
{
    m_origin_x = x;
    m_origin_y = y;
}

point<double> CWxPainter::GetOrigin()
{
    return {m_origin_x, m_origin_y};
}

} // namespace uicore7
