#pragma once

#include "core/PathsSnapshot.h"
#include "core/TreeLock.h"

#include <wx/event.h>
#include <wx/thread.h>

#include <atomic>
#include <functional>

// The one worker thread of the configuration dialogs: joinable (ConfigWorkerSet runs, stops and
// joins it), it runs one job, a load or a save, off the GUI thread on its own copies: the tree's
// paths on a private copy of the settings, and the data. The results travel back as the payload
// of a completion event queued to the dialog: a wxThreadEvent of the dialog's event type whose
// string is the mode, "GET" or "SAVE", and whose int is the job number; a save's payload is what
// it could not write, a wxString ("" when all was written). A worker asked to stop
// posts nothing more; a save is never cut short.
class ConfigWorker : public wxThread {
public:
    static constexpr const char* GET = "GET";
    static constexpr const char* SAVE = "SAVE";

    // What a dialog edits is read into a fresh Data by a load function, which may Post progress
    // texts and gives up early when Stopping(), and written back by a save function, which
    // answers the files it could not write, a line each with the system's reason.
    template <class Data>
    using LoadFunction = void (*)(const InstallPaths& paths, bool restore, ConfigWorker& worker,
                                  Data& data);
    template <class Data>
    using SaveFunction = wxString (*)(const InstallPaths& paths, const Data& data);

    // A "GET" job; the data load fills is the completion's payload.
    template <class Data>
    ConfigWorker(wxEvtHandler* dialog, wxEventType type, const InstallPaths& paths, bool restore,
                 LoadFunction<Data> load)
        : ConfigWorker(dialog, type, false, paths,
                       [restore, load](const InstallPaths& tree, ConfigWorker& worker,
                                       wxThreadEvent& completion) {
                           Data data;
                           load(tree, restore, worker, data);
                           completion.SetPayload(data);
                       }) {}
    // A "SAVE" job of the dialog's data, under the tree's lock as kovixctl's saves are, so that
    // the two never interleave on one tree.
    template <class Data>
    ConfigWorker(wxEvtHandler* dialog, wxEventType type, const InstallPaths& paths, Data data,
                 SaveFunction<Data> save)
        : ConfigWorker(dialog, type, true, paths,
                       [data = std::move(data), save](const InstallPaths& tree, ConfigWorker&,
                                                      wxThreadEvent& completion) {
                           const TreeLock lock(tree.ProgramFolder());
                           completion.SetPayload(save(tree, data));
                       }) {}

    // Set by the owner before the thread runs.
    void SetJob(int number) { jobNumber = number; }
    void RequestStop() { stopping = true; }
    bool Stopping() const { return stopping; }
    // Queues an event of the worker's type and job carrying text, unless a stop was requested.
    void Post(const wxString& text);

private:
    using Job = std::function<void(const InstallPaths&, ConfigWorker&, wxThreadEvent&)>;

    ConfigWorker(wxEvtHandler* dialog, wxEventType type, bool save, const InstallPaths& paths,
                 Job job);
    ExitCode Entry() override;
    void Queue(wxThreadEvent* event);

    wxEvtHandler* dialog;
    wxEventType type;
    bool save;
    PathsSnapshot paths;
    Job job;
    int jobNumber = 0;
    std::atomic<bool> stopping{false};
};
