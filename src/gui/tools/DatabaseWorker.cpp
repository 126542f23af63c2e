#include "gui/tools/DatabaseWorker.h"

#include <cmath>

wxDEFINE_EVENT(EVT_DATABASE_PROGRESS, wxThreadEvent);
wxDEFINE_EVENT(EVT_DATABASE_DONE, wxThreadEvent);

wxThread::ExitCode DatabaseWorker::Entry() {
    int lastShown = -1;
    const DatabaseOutcome outcome = job([&](double fraction) {
        const int perMille = static_cast<int>(std::lround(fraction * 1000));
        // One event per step: a fast dump must not flood the window's queue.
        if (perMille != lastShown && !stopping) {
            lastShown = perMille;
            auto* event = new wxThreadEvent(EVT_DATABASE_PROGRESS);
            event->SetInt(perMille);
            wxQueueEvent(sink, event);
        }
        return !stopping && !TestDestroy();
    });
    if (!stopping) {
        auto* event = new wxThreadEvent(EVT_DATABASE_DONE);
        event->SetPayload(outcome);
        wxQueueEvent(sink, event);
    }
    return nullptr;
}
