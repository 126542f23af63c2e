#include "gui/GuiWait.h"

#include <wx/app.h>
#include <wx/stopwatch.h>
#include <wx/utils.h>

bool WaitFor(const std::function<bool()>& condition, int timeoutMs) {
    wxStopWatch watch;
    while (!condition()) {
        if (watch.Time() > timeoutMs)
            return condition();
        if (wxTheApp)
            wxTheApp->Yield(true);
        wxMilliSleep(5);
    }
    return true;
}
