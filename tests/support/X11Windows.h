#pragma once

#include <X11/Xlib.h>

#include <cstddef>
#include <vector>

// The window tests' and benches' view of the X display's top-level windows.
namespace X11Windows {

// The pid a window's owner stated (_NET_WM_PID); 0 when it stated none.
long WindowPid(Display* display, Window window);

// The top-level windows on screen (mapped and viewable) of the process with this pid.
std::vector<Window> ViewableWindowsOf(Display* display, long pid);
size_t ViewableWindowCount(long pid);

// Asks the top-level windows of the process with this pid to close, as a window manager does
// when the user clicks the close button (WM_DELETE_WINDOW). False when the process has no such
// window on the display yet.
bool RequestClose(long pid);

} // namespace X11Windows
