#pragma once

// Asks the top-level windows of the process with this pid to close, as a window manager does when
// the user clicks the close button (the X11 WM_DELETE_WINDOW message). False when the process has
// no such window on the display yet.
bool RequestWindowClose(long pid);
