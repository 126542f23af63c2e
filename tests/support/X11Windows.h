#pragma once

#include <X11/Xlib.h>

// The window tests' and benches' view of the X display's top-level windows.
namespace X11Windows {

// The pid a window's owner stated (_NET_WM_PID); 0 when it stated none.
long WindowPid(Display* display, Window window);

// Asks the top-level windows of the process with this pid to close, as a window manager does
// when the user clicks the close button (WM_DELETE_WINDOW). False when the process has no such
// window on the display yet.
bool RequestClose(long pid);

} // namespace X11Windows
