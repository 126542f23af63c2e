#pragma once

#include <wx/event.h>
#include <wx/thread.h>

#include <atomic>

// A one-job worker thread of a configuration dialog (joinable; ConfigWorkerSet runs, stops and
// joins it). The job runs off the GUI thread on the worker's own copies; the results travel back
// as the payload of a completion event queued to the dialog: a wxThreadEvent of the dialog's
// event type whose string is the mode, "GET" or "SAVE", and whose int is the job number. A worker
// asked to stop posts nothing more.
class ConfigWorker : public wxThread {
public:
    static constexpr const char* GET = "GET";
    static constexpr const char* SAVE = "SAVE";

    ConfigWorker(wxEvtHandler* dialog, wxEventType type, bool save);

    // Set by the owner before the thread runs.
    void SetJob(int number) { job = number; }
    void RequestStop() { stopping = true; }

protected:
    // The job; fills the completion's payload. Runs on the worker thread.
    virtual void Work(wxThreadEvent& completion) = 0;
    bool IsSave() const { return save; }
    bool Stopping() const { return stopping; }
    // Queues an event of the worker's type and job carrying text, unless a stop was requested.
    void Post(const wxString& text);

private:
    ExitCode Entry() override;
    void Queue(wxThreadEvent* event);

    wxEvtHandler* dialog;
    wxEventType type;
    bool save;
    int job = 0;
    std::atomic<bool> stopping{false};
};
