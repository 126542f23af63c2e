#pragma once

#include <wx/image.h>
#include <wx/window.h>

// Refreshes window and runs the event loop until it has painted, then lets the frame reach the X
// server; false when it did not paint.
bool WaitForPaint(wxWindow& window);
// What the X server shows of a rectangle of the screen (Xvfb in the tests), as drawn so far; an
// invalid image when ImageMagick's import is missing.
wxImage CaptureScreen(const wxRect& rect);
