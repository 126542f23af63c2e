#pragma once

#include <wx/event.h>
#include <wx/image.h>

// Notes the paint events of a window from construction on, so that a test can wait until a change
// has reached the screen before it looks.
class PaintWatch : public wxEvtHandler {
public:
    explicit PaintWatch(wxWindow& window);
    ~PaintWatch() override;
    // Runs the event loop until the window has painted, then lets the frame reach the X server.
    bool Wait(int timeoutMs = 5000);

private:
    wxWindow& window;
    bool painted = false;
};

// Refreshes window and waits until it has painted itself.
bool WaitForPaint(wxWindow& window);
// What the X server shows of a rectangle of the screen (Xvfb in the tests), as drawn so far; an
// invalid image when ImageMagick's import is missing.
wxImage CaptureScreen(const wxRect& rect);
