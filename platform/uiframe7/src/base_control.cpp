#include "uiframe7/base_control.h"

#include "uicore7/sys_window.h"
#include "uicore7/wx_painter.h"

#include <wx/dcbuffer.h>
#include <wx/dcmemory.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/tooltip.h>
#include <wx/utils.h>

#include <algorithm>

namespace uiframe7 {

using uicore7::point;
using uicore7::rectangle;

class CBaseControl::CSysWindowImpl : public uicore7::ISysWindow
{
public:
    explicit CSysWindowImpl(CBaseControl* owner) : m_owner(owner) {}

    CBaseControl* owner() const { return m_owner; }

    uicore7::IPainter* GetPainter() override
    {
        const wxFont font = m_owner->GetFont();
        if (!m_painter || !m_font.IsSameAs(font)) {
            m_painter.reset();
            if (!m_dc) {
                m_bitmap = wxBitmap(1, 1);
                m_dc = std::make_unique<wxMemoryDC>(m_bitmap);
            }
            m_dc->SetFont(font);
            m_font = font;
            m_painter = std::make_unique<uicore7::CWxPainter>(*m_dc, nullptr);
        }
        return m_painter.get();
    }

    point<int> ClientToScreen(point<int> client) const override
    {
        const wxPoint p = m_owner->ClientToScreen(wxPoint(client.x, client.y));
        return {p.x, p.y};
    }
    point<int> ScreenToClient(point<int> screen) const override
    {
        const wxPoint p = m_owner->ScreenToClient(wxPoint(screen.x, screen.y));
        return {p.x, p.y};
    }
    point<int> GetMousePosition() const override
    {
        const wxPoint p = wxGetMousePosition();
        return {p.x, p.y};
    }
    uicore7::size<int> GetClientSize() const override
    {
        const wxSize s = m_owner->GetClientSize();
        return {s.x, s.y};
    }

    void Refresh() override { m_owner->Refresh(false); }
    void RefreshRect(const rectangle<int>& r) override
    {
        const wxRect rect(r.left, r.top, r.width(), r.height());
        m_owner->RefreshRect(rect, false);
    }
    void Update() override { m_owner->Update(); }

    void SetToolTipText(const std::wstring& text) override
    {
        if (text.empty()) {
            if (m_owner->GetToolTip())
                m_owner->UnsetToolTip();
        } else if (m_owner->GetToolTipText() != wxString(text)) {
            m_owner->SetToolTip(text);
        }
    }
    std::wstring GetToolTipText() const override
    {
        return m_owner->GetToolTipText().ToStdWstring();
    }

    void SetVScrollInfo(int position, int page, int range) override
    {
        if (range <= page) {
            position = 0;
            page = 0;
            range = 0;
        }
        if (position == m_pos && page == m_page && range == m_range)
            return;
        m_pos = position;
        m_page = page;
        m_range = range;
        m_owner->SetScrollbar(wxVERTICAL, position, page, range);
    }

    void SetFocus() override { m_owner->SetFocus(); }
    bool HasFocus() const override { return m_owner->HasFocus(); }
    wxWindow* GetNativeWindow() override { return m_owner; }

private:
    CBaseControl* m_owner;
    wxBitmap m_bitmap;
    std::unique_ptr<wxMemoryDC> m_dc;
    std::unique_ptr<uicore7::CWxPainter> m_painter;
    wxFont m_font;
    int m_pos = -1;
    int m_page = -1;
    int m_range = -1;
};

CBaseControl::CBaseControl(wxWindow* parent, wxWindowID id, bool fill_parent, long style)
    : m_root(std::make_unique<CVisualElement>()), m_sys(std::make_unique<CSysWindowImpl>(this))
{
    // Painted entirely by the elements; no background erase, so no flicker.
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    Create(parent, id, wxDefaultPosition, wxDefaultSize,
           style | wxWANTS_CHARS | wxVSCROLL | wxFULL_REPAINT_ON_RESIZE);
    m_root->m_host = this;
    const wxSize client = GetClientSize();
    m_root->SetRect({0, 0, client.x, client.y});

    Bind(wxEVT_PAINT, &CBaseControl::on_paint, this);
    Bind(wxEVT_SIZE, &CBaseControl::on_size, this);
    for (auto type : {wxEVT_LEFT_DOWN, wxEVT_LEFT_UP, wxEVT_LEFT_DCLICK, wxEVT_RIGHT_DOWN,
                      wxEVT_RIGHT_UP, wxEVT_RIGHT_DCLICK, wxEVT_MIDDLE_DOWN, wxEVT_MIDDLE_UP,
                      wxEVT_MIDDLE_DCLICK, wxEVT_MOTION, wxEVT_LEAVE_WINDOW, wxEVT_MOUSEWHEEL})
        Bind(type, &CBaseControl::on_mouse, this);
    Bind(wxEVT_KEY_DOWN, &CBaseControl::on_key_down, this);
    Bind(wxEVT_SET_FOCUS, &CBaseControl::on_focus, this);
    Bind(wxEVT_KILL_FOCUS, &CBaseControl::on_focus, this);
    for (auto type : {wxEVT_SCROLLWIN_TOP, wxEVT_SCROLLWIN_BOTTOM, wxEVT_SCROLLWIN_LINEUP,
                      wxEVT_SCROLLWIN_LINEDOWN, wxEVT_SCROLLWIN_PAGEUP, wxEVT_SCROLLWIN_PAGEDOWN,
                      wxEVT_SCROLLWIN_THUMBTRACK, wxEVT_SCROLLWIN_THUMBRELEASE})
        Bind(type, &CBaseControl::on_scroll, this);
    Bind(wxEVT_MOUSE_CAPTURE_LOST, &CBaseControl::on_capture_lost, this);

    if (fill_parent && parent) {
        wxSizer* sizer = parent->GetSizer();
        if (!sizer) {
            sizer = new wxBoxSizer(wxVERTICAL);
            parent->SetSizer(sizer);
        }
        sizer->Add(this, 1, wxEXPAND);
        parent->Layout();
    }
}

CBaseControl::~CBaseControl()
{
    m_destroying = true;
    if (HasCapture())
        wxWindow::ReleaseMouse();
    m_scroll_target = m_focus = m_capture = m_hover = nullptr;
    // Owned elements first (they leave the tree themselves), then whatever
    // others still hang under the root (their owners destroy them later).
    while (!m_owned.empty()) {
        std::unique_ptr<CVisualElement> e = std::move(m_owned.back());
        m_owned.pop_back();
        e.reset();
    }
    m_root->detach_children();
    m_root->m_host = nullptr;
}

uicore7::ISysWindow* CBaseControl::GetSysWindow()
{
    return m_sys.get();
}

CBaseControl* CBaseControl::FromSysWindow(uicore7::ISysWindow* window)
{
    auto* impl = dynamic_cast<CSysWindowImpl*>(window);
    return impl ? impl->owner() : nullptr;
}

void CBaseControl::AdoptElement(CVisualElement* element)
{
    if (!element)
        return;
    for (const auto& owned : m_owned)
        if (owned.get() == element)
            return;
    m_owned.emplace_back(element);
    element->ReParent(m_root.get(), CVisualElement::rpDefault);
    LayoutElements();
}

void CBaseControl::LayoutElements()
{
    const wxSize client = GetClientSize();
    const rectangle<int> r(0, 0, std::max(0, client.x), std::max(0, client.y));
    m_root->SetRect(r);
    for (const auto& owned : m_owned)
        owned->SetRect(r);
}

void CBaseControl::SetFocusElement(CVisualElement* element)
{
    if (element == m_focus)
        return;
    CVisualElement* old = m_focus;
    m_focus = element;
    if (HasFocus()) {
        if (old)
            old->OnFocusChanged(false);
        if (m_focus)
            m_focus->OnFocusChanged(true);
    }
}

void CBaseControl::SetCaptureElement(CVisualElement* element)
{
    if (element == m_capture)
        return;
    m_capture = element;
    if (m_capture && !HasCapture())
        wxWindow::CaptureMouse();
    else if (!m_capture && HasCapture())
        wxWindow::ReleaseMouse();
}

namespace {
bool is_within(const CVisualElement* e, const CVisualElement* ancestor)
{
    for (; e; e = e->GetParent())
        if (e == ancestor)
            return true;
    return false;
}
} // namespace

void CBaseControl::ForgetElement(CVisualElement* element)
{
    if (is_within(m_scroll_target, element))
        m_scroll_target = nullptr;
    if (is_within(m_focus, element))
        m_focus = nullptr;
    if (is_within(m_hover, element))
        m_hover = nullptr;
    if (is_within(m_capture, element)) {
        m_capture = nullptr;
        if (!m_destroying && HasCapture())
            wxWindow::ReleaseMouse();
    }
}

namespace {
void paint_tree(CVisualElement* e, uicore7::IPainter& painter, const rectangle<int>& update)
{
    if (!e->IsShown())
        return;
    const rectangle<int>& r = e->GetRect();
    const rectangle<int> visible = r.intersection(update);
    if (visible.empty())
        return;
    painter.SetOrigin(r.left, r.top);
    painter.PushClip(rectangle<double>::from(e->GetLocalRect()));
    rectangle<int> local = visible;
    local.offset(-r.left, -r.top);
    e->OnPaint(painter, local);
    painter.PopClip();
    // A child may leave the list while its parent paints; walk a copy.
    const std::vector<CVisualElement*> children = e->GetChildren();
    for (CVisualElement* child : children)
        paint_tree(child, painter, visible);
}
} // namespace

void CBaseControl::Render(wxDC& dc, const wxRect& update)
{
    dc.SetFont(GetFont());
    uicore7::CWxPainter painter(dc, this);
    const rectangle<int> area(update.x, update.y, update.x + update.width,
                              update.y + update.height);
    painter.SetFillColor(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW));
    painter.FillRectangle(rectangle<double>::from(area));
    paint_tree(m_root.get(), painter, area);
}

void CBaseControl::on_paint(wxPaintEvent&)
{
    wxAutoBufferedPaintDC dc(this);
    wxRect update = GetUpdateRegion().GetBox();
    if (update.IsEmpty())
        update = wxRect(GetClientSize());
    Render(dc, update);
}

void CBaseControl::on_size(wxSizeEvent& event)
{
    LayoutElements();
    Refresh(false);
    event.Skip();
}

CVisualElement* CBaseControl::target_at(point<int> p)
{
    if (m_capture)
        return m_capture;
    return m_root->HitTestElement(p);
}

template <class F> bool CBaseControl::bubble(CVisualElement* from, point<int> p, F&& f)
{
    for (CVisualElement* e = from; e; e = e->GetParent()) {
        const point<int> local = e->WindowToLocal(p);
        if (f(e, local))
            return true;
        if (e == m_root.get())
            break;
    }
    return false;
}

void CBaseControl::on_mouse(wxMouseEvent& event)
{
    const point<int> p(event.GetX(), event.GetY());
    const int keys = uicore7::KeyStateFromWx(event);
    const wxEventType type = event.GetEventType();

    if (type == wxEVT_LEAVE_WINDOW) {
        if (m_hover) {
            CVisualElement* old = m_hover;
            m_hover = nullptr;
            old->OnMouseLeave();
        }
        event.Skip();
        return;
    }

    CVisualElement* target = target_at(p);
    if (type == wxEVT_MOTION) {
        CVisualElement* under = m_root->HitTestElement(p);
        if (under != m_hover) {
            CVisualElement* old = m_hover;
            m_hover = under;
            if (old)
                old->OnMouseLeave();
        }
        bubble(target, p,
               [&](CVisualElement* e, point<int> l) { return e->OnMouseMove(l.x, l.y, keys); });
        return;
    }
    if (type == wxEVT_MOUSEWHEEL) {
        const int delta = std::max(1, event.GetWheelDelta());
        const int lines = event.GetWheelRotation() * std::max(1, event.GetLinesPerAction()) / delta;
        if (event.GetWheelAxis() != wxMOUSE_WHEEL_VERTICAL || lines == 0 ||
            !bubble(target, p, [&](CVisualElement* e, point<int> l) {
                return e->OnMouseWheel(l.x, l.y, keys, lines);
            }))
            event.Skip();
        return;
    }

    uicore7::MouseButton button = uicore7::mbNone;
    if (event.LeftDown() || event.LeftUp() || event.LeftDClick())
        button = uicore7::mbLeft;
    else if (event.RightDown() || event.RightUp() || event.RightDClick())
        button = uicore7::mbRight;
    else if (event.MiddleDown() || event.MiddleUp() || event.MiddleDClick())
        button = uicore7::mbMiddle;

    if (event.ButtonDown() || event.ButtonDClick()) {
        if (!HasFocus())
            SetFocus();
        const bool dclick = event.ButtonDClick();
        const int press_keys = keys | (dclick ? uicore7::ksDoubleClick : 0);
        bubble(target, p, [&](CVisualElement* e, point<int> l) {
            return e->OnMouseDown(l.x, l.y, press_keys, button);
        });
        if (dclick) {
            // The press may have removed the element under the pointer.
            bubble(target_at(p), p, [&](CVisualElement* e, point<int> l) {
                return e->OnDoubleClick(l.x, l.y, press_keys, button);
            });
        }
        return;
    }
    if (event.ButtonUp()) {
        bubble(target, p, [&](CVisualElement* e, point<int> l) {
            return e->OnMouseUp(l.x, l.y, keys, button);
        });
        return;
    }
    event.Skip();
}

void CBaseControl::on_key_down(wxKeyEvent& event)
{
    const int keys = uicore7::KeyStateFromWx(event);
    const int code = event.GetKeyCode();
    for (CVisualElement* e = m_focus ? m_focus : m_root.get(); e; e = e->GetParent())
        if (e->OnKeyDown(code, keys))
            return;
    if (code == WXK_TAB) {
        Navigate(event.ShiftDown() ? wxNavigationKeyEvent::IsBackward
                                   : wxNavigationKeyEvent::IsForward);
        return;
    }
    event.Skip();
}

void CBaseControl::on_focus(wxFocusEvent& event)
{
    const bool focused = event.GetEventType() == wxEVT_SET_FOCUS;
    if (m_focus)
        m_focus->OnFocusChanged(focused);
    event.Skip();
}

void CBaseControl::on_scroll(wxScrollWinEvent& event)
{
    if (event.GetOrientation() != wxVERTICAL || !m_scroll_target) {
        event.Skip();
        return;
    }
    const wxEventType type = event.GetEventType();
    ScrollAction action = saThumbTrack;
    if (type == wxEVT_SCROLLWIN_TOP)
        action = saTop;
    else if (type == wxEVT_SCROLLWIN_BOTTOM)
        action = saBottom;
    else if (type == wxEVT_SCROLLWIN_LINEUP)
        action = saLineUp;
    else if (type == wxEVT_SCROLLWIN_LINEDOWN)
        action = saLineDown;
    else if (type == wxEVT_SCROLLWIN_PAGEUP)
        action = saPageUp;
    else if (type == wxEVT_SCROLLWIN_PAGEDOWN)
        action = saPageDown;
    else if (type == wxEVT_SCROLLWIN_THUMBRELEASE)
        action = saThumbRelease;
    if (!m_scroll_target->OnScroll(action, event.GetPosition()))
        event.Skip();
}

void CBaseControl::on_capture_lost(wxMouseCaptureLostEvent&)
{
    CVisualElement* old = m_capture;
    m_capture = nullptr;
    if (old)
        old->OnCaptureLost();
}

} // namespace uiframe7
