#pragma once
// A listener for the mouse and key events of a viewer. Handlers added to a
// viewer see each event before the viewer acts on it, in the order added.
#include "uicore7/input.h"

namespace uiframe7 {

// Every hook gets the position in the viewer's coordinates, the key-state
// bits (uicore7::KeyState; ksDoubleClick on the second press of a double
// click) and a flag:
//  - set *handled to true and the viewer does not act on the event (the
//    handlers after this one still see it);
//  - return true and the event stops here: no later handler and no viewer.
// The default hooks do nothing and return false.
class CEventHandler
{
public:
    virtual ~CEventHandler();

    virtual bool ProcessButtonDown(int x, int y, int keys, uicore7::MouseButton button,
                                   bool* handled);
    virtual bool ProcessButtonUp(int x, int y, int keys, uicore7::MouseButton button,
                                 bool* handled);
    // After the ProcessButtonDown of the second press (which carries ksDoubleClick).
    virtual bool ProcessDoubleClick(int x, int y, int keys, uicore7::MouseButton button,
                                    bool* handled);
    virtual bool ProcessMouseMove(int x, int y, int keys, bool* handled);
    // key_code is a wxWidgets key code (WXK_..., or the upper-case character).
    virtual bool ProcessKeyDown(int key_code, int keys, bool* handled);
};

} // namespace uiframe7
