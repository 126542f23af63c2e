// Tests of the Windows platform layer against the real system calls (run under Wine here).
#include "core/TextFiles.h"
#include "platform/Platform.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"
#include "windows/WindowsTesting.h"

#include <gtest/gtest.h>
#include <wx/dir.h>
#include <wx/filefn.h>
#include <wx/snglinst.h>
#include <wx/time.h>
#include <wx/utils.h>

#include <windows.h>

#include <algorithm>
#include <memory>

namespace {

size_t FilesIn(const TempDir& dir) {
    wxArrayString files;
    return wxDir::GetAllFiles(dir.Path(), &files, "", wxDIR_FILES);
}

bool Contains(const std::vector<long>& pids, long pid) {
    return std::find(pids.begin(), pids.end(), pid) != pids.end();
}

// Reads until the child has ended and its pipe is empty.
wxString OutputUntilEnd(ChildProcess& child) {
    wxString text;
    WaitUntil([&] {
        text += child.ReadOutput();
        return !child.IsActive();
    });
    return text + child.ReadOutput();
}

std::unique_ptr<ChildProcess> StartChild(const wxString& program, const wxString& arguments) {
    ChildSpec launch;
    launch.commandLine = program + " " + arguments;
    return Platform::Get().StartHidden(launch);
}

} // namespace

TEST(Win32Child, PipeCarriesOutputWhileThePrefixAndVariablesReachOnlyTheChild) {
    TempDir dir;
    wxString pathBefore;
    ASSERT_TRUE(wxGetEnv("PATH", &pathBefore));
    ChildSpec launch;
    launch.commandLine = ChildProgram() + " print \"a b\" c";
    launch.workingFolder = WindowsPath(dir.Path());
    launch.pathPrefix = "C:\\kovix-prefix;";
    launch.environment = {{"KOVIX_PROBE", "yes"}};

    std::unique_ptr<ChildProcess> child = Platform::Get().StartHidden(launch);
    ASSERT_TRUE(child);
    EXPECT_GT(child->Pid(), 0);
    const wxString output = OutputUntilEnd(*child);
    EXPECT_EQ(output.Lower(), ("arg:a b\r\narg:c\r\ncwd:" + launch.workingFolder +
                               "\r\nprobe:yes\r\npath:c:\\kovix-prefix\r\n")
                                  .Lower());

    wxString pathAfter;
    EXPECT_TRUE(wxGetEnv("PATH", &pathAfter));
    EXPECT_EQ(pathAfter, pathBefore);
    EXPECT_FALSE(wxGetEnv("KOVIX_PROBE", nullptr));
}

TEST(Win32Child, AnUnquotedProgramPathWithBlanksRunsAndAMissingProgramGivesNoChild) {
    TempDir dir;
    const wxString program = CopyChildProgram(dir, "my stack/bin/child.exe");
    std::unique_ptr<ChildProcess> child = StartChild(program, "print x");
    ASSERT_TRUE(child);
    EXPECT_TRUE(OutputUntilEnd(*child).StartsWith("arg:x\r\n"));

    EXPECT_FALSE(StartChild(WindowsPath(dir.File("missing.exe")), "print"));
}

// The copy is named httpd.exe like the server the panel looks for; the lookup ignores case and
// skips a killed process even while its handle is still held here.
TEST(Win32Processes, AnHttpdIsFoundMeasuredPlacedAndKilledByName) {
    TempDir dir;
    std::unique_ptr<ChildProcess> child =
        StartChild(CopyChildProgram(dir, "apache/bin/httpd.exe"), "sleep");
    ASSERT_TRUE(child);
    const long pid = child->Pid();
    Platform& platform = Platform::Get();

    const std::vector<std::vector<long>> found =
        platform.FindProcessesByNames({"HTTPD.exe", "mysqld.exe"});
    EXPECT_TRUE(Contains(found[0], pid));
    EXPECT_TRUE(found[1].empty());
    EXPECT_TRUE(platform.ProcessLivesIn(pid, WindowsPath(dir.Path()) + "\\"));
    EXPECT_FALSE(platform.ProcessLivesIn(pid, WindowsPath(dir.Path()) + "x"));
    ProcessorTimes times;
    ASSERT_TRUE(platform.ReadProcessorTimes(pid, times));
    EXPECT_GT(times.machine, 0u);
    EXPECT_LE(times.process, times.machine);

    platform.KillProcess(pid);
    EXPECT_TRUE(WaitUntil([&] { return !child->IsActive(); }));
    EXPECT_FALSE(Contains(platform.FindProcessesByName("httpd.exe"), pid));
    EXPECT_FALSE(platform.ReadProcessorTimes(-1, times));
}

TEST(Win32Ports, ATakenPortIsSeenAndIsFreeOnceTheHolderEnds) {
    TempDir dir;
    std::unique_ptr<ChildProcess> holder =
        StartChild(CopyChildProgram(dir, "bin/httpd.exe"), "listen");
    ASSERT_TRUE(holder);
    wxString output;
    ASSERT_TRUE(WaitUntil([&] {
        output += holder->ReadOutput();
        return output.Contains("\n");
    }));
    long port = 0;
    ASSERT_TRUE(output.AfterFirst(':').BeforeFirst('\r').ToLong(&port)) << output;
    Platform& platform = Platform::Get();

    EXPECT_TRUE(platform.IsLocalPortTaken(port, 1000));
    // Wine's TCP table leaves the owner out (0), so the holder stays unnamed there; Windows names
    // it "httpd.exe (pid N)".
    const wxString holderText = platform.DescribePortHolder(port);
    EXPECT_TRUE(holderText.empty() ||
                holderText == wxString::Format("httpd.exe (pid %ld)", holder->Pid()))
        << holderText;

    platform.KillProcess(holder->Pid());
    ASSERT_TRUE(WaitUntil([&] { return !holder->IsActive(); }));
    EXPECT_TRUE(WaitUntil([&] { return !platform.IsLocalPortTaken(port, 1000); }));
    EXPECT_EQ(platform.DescribePortHolder(port), "");
}

// CTest runs this with LANG set (Wine derives the user's UI language from it) and tells what the
// language and its identifier must be.
TEST(Win32Language, TheAbbreviatedLanguageNameGivesTheTwoLetterCode) {
    wxString expected, identifier;
    ASSERT_TRUE(wxGetEnv("KOVIX_EXPECT_LANGUAGE", &expected));
    ASSERT_TRUE(wxGetEnv("KOVIX_EXPECT_LANGID", &identifier));
    EXPECT_EQ(wxString::Format("0x%04x", GetUserDefaultUILanguage()), identifier);
    EXPECT_EQ(Platform::Get().DefaultUiLanguage(), expected);
}

TEST(Win32Files, TheAtomicSaveReplacesTheFileOrLeavesItWhole) {
    TempDir dir;
    const wxString path = WindowsPath(dir.File("kovix.ini"));
    WriteBytes(path, "old");
    ASSERT_TRUE(TextFiles::WriteAtomically(path, "new"));
    EXPECT_EQ(ReadBytes(path), "new");
    EXPECT_EQ(FilesIn(dir), 1u);
    std::int64_t modified = 0;
    ASSERT_TRUE(Platform::Get().FileModificationTime(path, modified));
    EXPECT_LT(std::abs(modified - wxGetUTCTimeMillis().GetValue()), 60000);

    // A reader that does not share deletion keeps the file in place: the save fails cleanly.
    HANDLE reader = CreateFileW(path.wc_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(reader, INVALID_HANDLE_VALUE);
    EXPECT_FALSE(TextFiles::WriteAtomically(path, "newer"));
    CloseHandle(reader);
    EXPECT_EQ(ReadBytes(path), "new");
    EXPECT_EQ(FilesIn(dir), 1u); // no scratch file left
}

TEST(Win32SingleInstance, ASecondCheckerOfTheUsersNameSeesTheFirstUntilItIsGone) {
    const wxString name = "Kovix-Server-" + Platform::Get().LoginName() + "-test";
    auto first = std::make_unique<wxSingleInstanceChecker>(name);
    EXPECT_FALSE(first->IsAnotherRunning());
    {
        wxSingleInstanceChecker second(name);
        EXPECT_TRUE(second.IsAnotherRunning());
    }
    first.reset();
    wxSingleInstanceChecker third(name);
    EXPECT_FALSE(third.IsAnotherRunning());
}
