#include "uicore7/input.h"

#include <wx/mousestate.h>

namespace uicore7 {

int KeyStateFromWx(const wxKeyboardState& state)
{
    int keys = 0;
    if (state.ShiftDown())
        keys |= ksShift;
    if (state.ControlDown())
        keys |= ksControl;
    if (state.AltDown())
        keys |= ksAlt;
    return keys;
}

int KeyStateFromWx(const wxMouseState& state)
{
    int keys = KeyStateFromWx(static_cast<const wxKeyboardState&>(state));
    if (state.LeftIsDown())
        keys |= ksLeftButton;
    if (state.RightIsDown())
        keys |= ksRightButton;
    if (state.MiddleIsDown())
        keys |= ksMiddleButton;
    return keys;
}

} // namespace uicore7
