// Test entry for the window tests: a real GTK application on the display (Xvfb in CI), with wx
// assertions and error logs turned into test failures instead of modal boxes.
#include "core/TextFiles.h"
#include "core/net/HostNameLookupThread.h"

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/image.h>
#include <wx/init.h>
#include <wx/log.h>
#include <wx/utils.h>

#include <cstdio>

namespace {

class TestApp : public wxApp {
public:
    bool OnInit() override { return true; }
};

void FailOnAssert(const wxString& file, int line, const wxString& function,
                  const wxString& condition, const wxString& message) {
    ADD_FAILURE_AT(file.utf8_str(), line)
        << "wx assertion in " << function << ": " << condition << " " << message;
}

// Writes every message to stderr; an error, which the panel would show in a box, fails the test.
class FailOnError : public wxLogStderr {
protected:
    void DoLogRecord(wxLogLevel level, const wxString& message,
                     const wxLogRecordInfo& info) override {
        if (level <= wxLOG_Error)
            ADD_FAILURE() << "error logged: " << message;
        wxLogStderr::DoLogRecord(level, message, info);
    }
};

} // namespace

wxIMPLEMENT_APP_NO_MAIN(TestApp);

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!wxEntryStart(argc, argv)) {
        std::fprintf(stderr, "gui_tests: cannot open the display (run under xvfb-run)\n");
        return 1;
    }
    wxTheApp->CallOnInit();
    wxSetAssertHandler(FailOnAssert);
    wxLog::SetActiveTarget(new FailOnError);
    wxInitAllImageHandlers();
    TextFiles::InitEncoding();
    // Windows built by the tests look their network answers up on a closed loopback port.
    wxSetEnv(HostNameLookupThread::IP_SERVICE_VARIABLE, "127.0.0.1:1");
    wxSetEnv(HostNameLookupThread::PRODUCT_SITE_VARIABLE, "127.0.0.1:1");
    const int result = RUN_ALL_TESTS();
    wxTheApp->OnExit();
    wxEntryCleanup();
    return result;
}
