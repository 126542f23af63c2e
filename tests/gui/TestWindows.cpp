#include "gui/TestWindows.h"

#include "gui/GuiWait.h"

#include <wx/app.h>
#include <wx/toplevel.h>

void CloseWindow(wxWindow* window) {
    window->Destroy();
    WaitFor([window] {
        wxTheApp->ProcessIdle();
        return wxTopLevelWindows.Find(window) == nullptr;
    });
}
