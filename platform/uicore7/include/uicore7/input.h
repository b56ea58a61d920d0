#pragma once
// Mouse buttons and key-state bits passed with every mouse and key event.
class wxMouseState;
class wxKeyboardState;

namespace uicore7 {

enum MouseButton {
    mbNone = 0,
    mbLeft = 1,
    mbRight = 2,
    mbMiddle = 3,
};

// Bits of the "keys" argument of mouse and key events. The low bits follow the
// usual desktop convention; ksDoubleClick marks the second press of a double
// click, so a handler that acts on every press can ignore the repeat.
enum KeyState : int {
    ksLeftButton = 0x01,
    ksRightButton = 0x02,
    ksShift = 0x04,
    ksControl = 0x08,
    ksMiddleButton = 0x10,
    ksAlt = 0x20,
    ksDoubleClick = 0x100,
};

// Key-state bits of the buttons held and the modifiers pressed.
int KeyStateFromWx(const wxMouseState& state);
// Modifier bits only (shift, control, alt).
int KeyStateFromWx(const wxKeyboardState& state);

} // namespace uicore7
