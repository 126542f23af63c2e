#pragma once

#include "core/db/DatabaseTool.h"

#include <wx/event.h>
#include <wx/thread.h>

#include <atomic>
#include <functional>

wxDECLARE_EVENT(EVT_DATABASE_PROGRESS, wxThreadEvent); // int: per mille done
wxDECLARE_EVENT(EVT_DATABASE_DONE, wxThreadEvent);     // payload: DatabaseOutcome

// What a database job ended with, carried back to the window.
struct DatabaseOutcome {
    bool ok = false;
    DatabaseError error;
    wxString doneKey; // what to say on success, with doneArgument
    wxString doneArgument;
    wxString safetyBackup; // a restore's backup of what it replaced
    bool listed = false;   // databases holds the list as it is now
    std::vector<DatabaseInfo> databases;
};

// One database job off the GUI thread (joinable): the job gets a progress function that queues
// progress events and tells it whether to go on; the outcome comes back in one done event. The
// window that starts it owns it and joins it; after Stop() nothing more is queued.
class DatabaseWorker : public wxThread {
public:
    using Job = std::function<DatabaseOutcome(const DatabaseProgress&)>;

    DatabaseWorker(wxEvtHandler* sink, Job job)
        : wxThread(wxTHREAD_JOINABLE), sink(sink), job(std::move(job)) {}
    void Stop() { stopping = true; }

private:
    ExitCode Entry() override;

    wxEvtHandler* sink;
    Job job;
    std::atomic<bool> stopping{false};
};
