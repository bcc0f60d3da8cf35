// What the capture asks of the X server: the window manager's active window, where a
// window lies on the screen, and whether a window is still shown. Every call is a round
// trip, so an answer reflects what the server has done, not what was asked of it.
#pragma once

#include <QRect>

#include <cstdint>

namespace ostrivex::x11 {

// True when the program talks to an X server (the xcb platform).
bool Available();

// The window manager's active window (_NET_ACTIVE_WINDOW on the root window); without a
// window manager that names one, the window with the input focus. 0 when there is none.
uint32_t ActiveWindow();

// The top-level ancestor of `window`: the child of the root window that holds it (the
// window manager's frame, or the window itself when nothing framed it). 0 if unknown.
uint32_t TopLevelOf(uint32_t window);

// The rectangle of the window's top-level ancestor, frame and border included, in root
// window (screen) coordinates. Empty if the window does not exist.
QRect FrameRect(uint32_t window);

// True while the window's top-level ancestor (its frame) is mapped and viewable.
bool IsViewable(uint32_t window);

} // namespace ostrivex::x11
