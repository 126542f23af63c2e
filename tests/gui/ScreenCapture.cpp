#include "gui/ScreenCapture.h"

#include "gui/GuiTesting.h"
#include "platform/Platform.h"
#include "support/TempDir.h"

#include <wx/filefn.h>
#include <wx/utils.h>

bool WaitForPaint(wxWindow& window) {
    bool painted = false;
    const auto note = [&painted](wxPaintEvent& event) {
        painted = true;
        event.Skip();
    };
    window.Bind(wxEVT_PAINT, note);
    window.Refresh();
    const bool seen = WaitFor([&] { return painted; }, 5000);
    window.Unbind(wxEVT_PAINT, note);
    WaitFor([] { return false; }, 50);
    return seen;
}

wxImage CaptureScreen(const wxRect& rect) {
    // ImageMagick reads the X server itself (an in-process wxScreenDC capture keeps returning the
    // first picture it took). No event is handled meanwhile, so the picture shows exactly what
    // the program had drawn when it asked.
    TempDir folder("kovix-capture");
    const wxString file = folder.File("capture.png");
    ChildSpec launch;
    launch.commandLine = wxString::Format("import -window root -crop %dx%d+%d+%d +repage \"%s\"",
                                          rect.width, rect.height, rect.x, rect.y, file);
    std::unique_ptr<ChildProcess> child = Platform::Get().StartHidden(launch);
    wxImage image;
    if (!child)
        return image;
    while (child->IsActive())
        wxMilliSleep(5);
    if (wxFileExists(file))
        image.LoadFile(file, wxBITMAP_TYPE_PNG);
    return image;
}
