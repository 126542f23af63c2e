// The log viewer's cost while the log it follows grows by 10,000 lines a second: processor time
// of the window's thread (the GUI thread) over the run, as a share of one core, against the same
// event loop with the viewer closed; and how far the viewer lags behind the writer at the end.
// The writer is a thread of its own, outside the measured time. Needs a display:
//
//   xvfb-run -a -s "-screen 0 1280x1024x24" LogViewerBench [SECONDS] [LINES_PER_SECOND]
#include "BenchApp.h"
#include "core/AppSettings.h"
#include "core/InstallPaths.h"
#include "core/lang/LangTable.h"
#include "gui/tools/WinLogViewer.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/ffile.h>
#include <wx/timer.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <thread>

namespace {

double ThreadSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

// Appends lines to path at a steady rate in batches every 10 ms until stopped.
class Writer {
public:
    Writer(const wxString& path, int perSecond)
        : thread([this, path, perSecond] { Run(path, perSecond); }) {}
    ~Writer() {
        stop = true;
        thread.join();
    }
    long Written() const { return written; }

private:
    void Run(const wxString& path, int perSecond) {
        wxFFile file(path, "ab");
        const auto start = std::chrono::steady_clock::now();
        while (!stop) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            const double elapsed =
                std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
            std::string batch;
            for (; written < static_cast<long>(elapsed * perSecond); ++written)
                batch += "[Mon Nov 23 10:15:00.123456 2026] [php:error] [pid 4242] [client "
                         "127.0.0.1:5555] PHP Warning: line " +
                         std::to_string(written) + " in /www/app/index.php on line 12\n";
            file.Write(batch.data(), batch.size());
            file.Flush();
        }
    }

    std::atomic<bool> stop{false};
    std::atomic<long> written{0};
    std::thread thread;
};

double MeasureShare(int seconds) {
    const double before = ThreadSeconds();
    BenchApp::RunLoop(seconds * 1000);
    return 100.0 * (ThreadSeconds() - before) / seconds;
}

} // namespace

wxIMPLEMENT_APP_NO_MAIN(BenchApp);

int main(int argc, char** argv) {
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 20;
    const int rate = argc > 2 ? std::atoi(argv[2]) : 10000;
    if (!wxEntryStart(argc, argv) || !wxTheApp->CallOnInit()) {
        std::fprintf(stderr, "LogViewerBench: no display\n");
        return 1;
    }
    {
        TempDir tree("kovix-bench");
        WriteTreeFile(tree.Path(), "apache/logs/error.log", "");
        AppSettings settings;
        InitLangTable(settings, "en");
        const InstallPaths paths(tree.Path(), settings);
        Writer writer(paths.ApacheErrorLog(), rate);
        const double idle = MeasureShare(seconds / 2);
        auto* viewer = new WinLogViewer(nullptr, paths);
        viewer->Show();
        const double following = MeasureShare(seconds);
        const long shown = static_cast<long>(viewer->Lines().ShownCount());
        const long written = writer.Written();
        std::printf("log growing by %d lines/s, %d s\n", rate, seconds);
        std::printf("GUI thread, viewer closed:    %5.1f %% of one core\n", idle);
        std::printf("GUI thread, viewer following: %5.1f %% of one core\n", following);
        std::printf("lines written %ld, kept by the viewer %ld (capacity %zu)\n", written, shown,
                    LogLines::DefaultCapacity);
        viewer->Destroy();
    }
    wxTheApp->OnExit();
    wxEntryCleanup();
    return 0;
}
