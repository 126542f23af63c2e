#pragma once

#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/timer.h>

// The application object of the window benches, which drive everything from main.
class BenchApp : public wxApp {
public:
    bool OnInit() override { return true; }

    // Runs the event loop for ms milliseconds, idle as the panel normally is.
    static void RunLoop(int ms) {
        wxGUIEventLoop loop;
        wxTimer stop;
        stop.Bind(wxEVT_TIMER, [&loop](wxTimerEvent&) { loop.Exit(); });
        stop.StartOnce(ms);
        loop.Run();
    }
};
