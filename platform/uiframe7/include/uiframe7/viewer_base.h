#pragma once
// A visual element that shows data and lets event handlers see its input first.
#include "uiframe7/event_handler.h"
#include "uiframe7/visual_element.h"

#include <cstddef>
#include <vector>

namespace uiframe7 {

class CViewerBase : public CVisualElement
{
public:
    // Null and repeated handlers are ignored; the viewer does not own them.
    // A handler must be removed before it is destroyed if the viewer lives on.
    void AddEventHandler(CEventHandler* handler);
    bool RemoveEventHandler(CEventHandler* handler);
    bool HasEventHandler(CEventHandler* handler) const;
    void RemoveAllEventHandlers() { m_handlers.clear(); }
    std::size_t GetEventHandlerCount() const { return m_handlers.size(); }

    bool OnMouseDown(int x, int y, int keys, uicore7::MouseButton button) override;
    bool OnMouseUp(int x, int y, int keys, uicore7::MouseButton button) override;
    bool OnDoubleClick(int x, int y, int keys, uicore7::MouseButton button) override;
    bool OnMouseMove(int x, int y, int keys) override;
    bool OnKeyDown(int key_code, int keys) override;

protected:
    // The viewer's own handling, reached when no handler claimed the event.
    virtual bool ViewerButtonDown(int x, int y, int keys, uicore7::MouseButton button);
    virtual bool ViewerButtonUp(int x, int y, int keys, uicore7::MouseButton button);
    virtual bool ViewerDoubleClick(int x, int y, int keys, uicore7::MouseButton button);
    virtual bool ViewerMouseMove(int x, int y, int keys);
    virtual bool ViewerKeyDown(int key_code, int keys);

private:
    // True when a handler claimed the event.
    template <class F> bool dispatch(F&& f);

    std::vector<CEventHandler*> m_handlers;
};

} // namespace uiframe7
