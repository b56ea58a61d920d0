#include "uiframe7/visual_element.h"

#include "uicore7/sys_window.h"
#include "uiframe7/base_control.h"

#include <algorithm>

namespace uiframe7 {

CVisualElement::~CVisualElement()
{
    if (CBaseControl* host = GetHost())
        host->ForgetElement(this);
    detach_children();
    if (m_parent) {
        auto& siblings = m_parent->m_children;
        siblings.erase(std::remove(siblings.begin(), siblings.end(), this), siblings.end());
        m_parent = nullptr;
    }
}

void CVisualElement::detach_children()
{
    for (CVisualElement* child : m_children)
        child->m_parent = nullptr;
    m_children.clear();
}

void CVisualElement::ReParent(CVisualElement* new_parent, int flags)
{
    if (new_parent == m_parent)
        return;
    for (CVisualElement* p = new_parent; p; p = p->m_parent)
        if (p == this)
            return; // would make a cycle
    if (m_parent) {
        if (!(flags & rpSilent) && m_shown)
            Refresh();
        if (CBaseControl* host = GetHost())
            host->ForgetElement(this);
        auto& siblings = m_parent->m_children;
        siblings.erase(std::remove(siblings.begin(), siblings.end(), this), siblings.end());
    }
    m_parent = new_parent;
    if (m_parent) {
        m_parent->m_children.push_back(this);
        if (!(flags & rpSilent) && m_shown)
            Refresh();
    }
}

CBaseControl* CVisualElement::GetHost() const
{
    const CVisualElement* e = this;
    while (e->m_parent)
        e = e->m_parent;
    return e->m_host;
}

uicore7::ISysWindow* CVisualElement::GetSysWindow() const
{
    CBaseControl* host = GetHost();
    return host ? host->GetSysWindow() : nullptr;
}

void CVisualElement::SetRect(const uicore7::rectangle<int>& window_rect)
{
    const auto r = window_rect.normalized();
    if (r == m_rect)
        return;
    m_rect = r;
    OnLayout();
}

uicore7::rectangle<int> CVisualElement::GetLocalRect() const
{
    return {0, 0, m_rect.width(), m_rect.height()};
}

void CVisualElement::Show(bool show)
{
    if (show == m_shown)
        return;
    if (!show)
        Refresh();
    m_shown = show;
    if (show)
        Refresh();
}

uicore7::point<int> CVisualElement::WindowToLocal(uicore7::point<int> p) const
{
    return {p.x - m_rect.left, p.y - m_rect.top};
}

uicore7::point<int> CVisualElement::LocalToWindow(uicore7::point<int> p) const
{
    return {p.x + m_rect.left, p.y + m_rect.top};
}

uicore7::point<int> CVisualElement::ScreenToLocal(uicore7::point<int> p) const
{
    uicore7::ISysWindow* window = GetSysWindow();
    return WindowToLocal(window ? window->ScreenToClient(p) : p);
}

uicore7::point<int> CVisualElement::LocalToScreen(uicore7::point<int> p) const
{
    uicore7::ISysWindow* window = GetSysWindow();
    const auto w = LocalToWindow(p);
    return window ? window->ClientToScreen(w) : w;
}

void CVisualElement::Refresh()
{
    RefreshLocalRect(GetLocalRect());
}

void CVisualElement::RefreshLocalRect(const uicore7::rectangle<int>& local)
{
    uicore7::ISysWindow* window = GetSysWindow();
    if (!window)
        return;
    auto r = local.normalized();
    r.offset(m_rect.left, m_rect.top);
    r = r.intersection(m_rect);
    if (!r.empty())
        window->RefreshRect(r);
}

void CVisualElement::SetFocus()
{
    if (CBaseControl* host = GetHost()) {
        host->SetFocusElement(this);
        if (!host->HasFocus())
            host->SetFocus();
    }
}

bool CVisualElement::HasFocus() const
{
    CBaseControl* host = GetHost();
    return host && host->GetFocusElement() == this && host->HasFocus();
}

void CVisualElement::CaptureMouse()
{
    if (CBaseControl* host = GetHost())
        host->SetCaptureElement(this);
}

void CVisualElement::ReleaseMouse()
{
    CBaseControl* host = GetHost();
    if (host && host->GetCaptureElement() == this)
        host->SetCaptureElement(nullptr);
}

bool CVisualElement::HasCapture() const
{
    CBaseControl* host = GetHost();
    return host && host->GetCaptureElement() == this;
}

CVisualElement* CVisualElement::HitTestElement(uicore7::point<int> window_point)
{
    if (!m_shown || !m_rect.contains(window_point) || window_point.x == m_rect.right ||
        window_point.y == m_rect.bottom)
        return nullptr;
    // Later children paint on top, so they are asked first.
    for (auto it = m_children.rbegin(); it != m_children.rend(); ++it)
        if (CVisualElement* hit = (*it)->HitTestElement(window_point))
            return hit;
    return this;
}

void CVisualElement::OnPaint(uicore7::IPainter&, const uicore7::rectangle<int>&) {}

bool CVisualElement::OnMouseDown(int, int, int, uicore7::MouseButton)
{
    return false;
}
bool CVisualElement::OnMouseUp(int, int, int, uicore7::MouseButton)
{
    return false;
}
bool CVisualElement::OnDoubleClick(int, int, int, uicore7::MouseButton)
{
    return false;
}
bool CVisualElement::OnMouseMove(int, int, int)
{
    return false;
}
bool CVisualElement::OnMouseWheel(int, int, int, int)
{
    return false;
}
bool CVisualElement::OnKeyDown(int, int)
{
    return false;
}
bool CVisualElement::OnScroll(ScrollAction, int)
{
    return false;
}

} // namespace uiframe7
