#include "uiframe7/viewer_base.h"

#include <algorithm>

namespace uiframe7 {

CEventHandler::~CEventHandler() = default;

bool CEventHandler::ProcessButtonDown(int, int, int, uicore7::MouseButton, bool*)
{
    return false;
}
bool CEventHandler::ProcessButtonUp(int, int, int, uicore7::MouseButton, bool*)
{
    return false;
}
bool CEventHandler::ProcessDoubleClick(int, int, int, uicore7::MouseButton, bool*)
{
    return false;
}
bool CEventHandler::ProcessMouseMove(int, int, int, bool*)
{
    return false;
}
bool CEventHandler::ProcessKeyDown(int, int, bool*)
{
    return false;
}

void CViewerBase::AddEventHandler(CEventHandler* handler)
{
    if (handler && !HasEventHandler(handler))
        m_handlers.push_back(handler);
}

bool CViewerBase::RemoveEventHandler(CEventHandler* handler)
{
    auto it = std::find(m_handlers.begin(), m_handlers.end(), handler);
    if (it == m_handlers.end())
        return false;
    m_handlers.erase(it);
    return true;
}

bool CViewerBase::HasEventHandler(CEventHandler* handler) const
{
    return std::find(m_handlers.begin(), m_handlers.end(), handler) != m_handlers.end();
}

template <class F> bool CViewerBase::dispatch(F&& f)
{
    // A handler may add or remove handlers (or itself) while it runs.
    const std::vector<CEventHandler*> snapshot = m_handlers;
    bool claimed = false;
    for (CEventHandler* h : snapshot) {
        if (!HasEventHandler(h))
            continue;
        bool handled = false;
        if (f(h, &handled))
            return true;
        claimed = claimed || handled;
    }
    return claimed;
}

bool CViewerBase::OnMouseDown(int x, int y, int keys, uicore7::MouseButton button)
{
    if (dispatch([&](CEventHandler* h, bool* handled) {
            return h->ProcessButtonDown(x, y, keys, button, handled);
        }))
        return true;
    return ViewerButtonDown(x, y, keys, button);
}

bool CViewerBase::OnMouseUp(int x, int y, int keys, uicore7::MouseButton button)
{
    if (dispatch([&](CEventHandler* h, bool* handled) {
            return h->ProcessButtonUp(x, y, keys, button, handled);
        }))
        return true;
    return ViewerButtonUp(x, y, keys, button);
}

bool CViewerBase::OnDoubleClick(int x, int y, int keys, uicore7::MouseButton button)
{
    if (dispatch([&](CEventHandler* h, bool* handled) {
            return h->ProcessDoubleClick(x, y, keys, button, handled);
        }))
        return true;
    return ViewerDoubleClick(x, y, keys, button);
}

bool CViewerBase::OnMouseMove(int x, int y, int keys)
{
    if (dispatch([&](CEventHandler* h, bool* handled) {
            return h->ProcessMouseMove(x, y, keys, handled);
        }))
        return true;
    return ViewerMouseMove(x, y, keys);
}

bool CViewerBase::OnKeyDown(int key_code, int keys)
{
    if (dispatch([&](CEventHandler* h, bool* handled) {
            return h->ProcessKeyDown(key_code, keys, handled);
        }))
        return true;
    return ViewerKeyDown(key_code, keys);
}

bool CViewerBase::ViewerButtonDown(int, int, int, uicore7::MouseButton)
{
    return false;
}
bool CViewerBase::ViewerButtonUp(int, int, int, uicore7::MouseButton)
{
    return false;
}
bool CViewerBase::ViewerDoubleClick(int, int, int, uicore7::MouseButton)
{
    return false;
}
bool CViewerBase::ViewerMouseMove(int, int, int)
{
    return false;
}
bool CViewerBase::ViewerKeyDown(int, int)
{
    return false;
}

} // namespace uiframe7
