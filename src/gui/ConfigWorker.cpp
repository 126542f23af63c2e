#include "gui/ConfigWorker.h"

ConfigWorker::ConfigWorker(wxEvtHandler* dialog, wxEventType type, bool save,
                           const InstallPaths& paths, Job job)
    : wxThread(wxTHREAD_JOINABLE), dialog(dialog), type(type), save(save), paths(paths),
      job(std::move(job)) {}

wxThread::ExitCode ConfigWorker::Entry() {
    auto* completion = new wxThreadEvent(type);
    completion->SetString(save ? SAVE : GET);
    completion->SetInt(jobNumber);
    job(paths.Get(), *this, *completion);
    Queue(completion);
    return nullptr;
}

void ConfigWorker::Post(const wxString& text) {
    auto* event = new wxThreadEvent(type);
    event->SetString(text);
    event->SetInt(jobNumber);
    Queue(event);
}

void ConfigWorker::Queue(wxThreadEvent* event) {
    if (stopping) {
        delete event;
        return;
    }
    wxQueueEvent(dialog, event);
}
