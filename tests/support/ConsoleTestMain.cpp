// Test entry for the display-less test programs: a console wx app, assertions as test failures.
#include "core/TextFiles.h"

#include <gtest/gtest.h>
#include <wx/init.h>
#include <wx/log.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    wxInitializer initializer(argc, argv);
    if (!initializer.IsOk())
        return 1;
    wxSetAssertHandler([](const wxString& file, int line, const wxString& function,
                          const wxString& condition, const wxString& message) {
        ADD_FAILURE_AT(file.utf8_str(), line)
            << "wx assertion in " << function << ": " << condition << " " << message;
    });
    wxLog::SetActiveTarget(new wxLogStderr);
    TextFiles::InitEncoding();
    return RUN_ALL_TESTS();
}
