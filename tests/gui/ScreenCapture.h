#pragma once

#include <wx/image.h>
#include <wx/window.h>

#include <functional>

// Runs change (by default a refresh of window) and the event loop until window has painted, then
// lets the frame reach the X server; false when it did not paint.
bool WaitForPaint(wxWindow& window, const std::function<void()>& change = nullptr);
// What the X server shows of a rectangle of the screen (Xvfb in the tests), as drawn so far; an
// invalid image when ImageMagick's import is missing.
wxImage CaptureScreen(const wxRect& rect);
