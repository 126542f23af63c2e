#include "platform/PosixChildProcess.h"

#include "support/ScopedEnv.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>
#include <wx/utils.h>

#include <chrono>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace {

std::unique_ptr<ChildProcess> Start(const wxString& commandLine, const wxString& folder = "") {
    ChildSpec launch;
    launch.commandLine = commandLine;
    launch.workingFolder = folder;
    return Platform::Get().StartHidden(launch);
}

// Everything the child writes until it ends.
wxString OutputUntilEnd(ChildProcess& child) {
    wxString output;
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (child.IsActive() && std::chrono::steady_clock::now() < giveUp) {
        output += child.ReadOutput();
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return output + child.ReadOutput();
}

} // namespace

// Output and error share one pipe, input is a pipe, a zero byte ends the chunk it is in; the
// shell's own descriptors are 0, 1, 2 and the one ls reads the folder with, none of the panel's.
TEST(PosixChildProcess, OutputAndErrorShareOnePipeNoDescriptorIsInheritedAndTheChildIsReaped) {
    int kept[2];
    ASSERT_EQ(pipe(kept), 0); // inheritable on purpose
    auto child =
        Start("/bin/sh -c \"echo out; echo err >&2; test -p /dev/stdin && ls /proc/self/fd "
              "&& printf 'piped\\000cd'\"");
    ASSERT_TRUE(child);
    EXPECT_EQ(OutputUntilEnd(*child), "out\nerr\n0\n1\n2\n3\npiped");
    EXPECT_FALSE(wxDirExists(wxString::Format("/proc/%ld", child->Pid()))) << "no zombie";
    close(kept[0]);
    close(kept[1]);
}

TEST(PosixChildProcess, ReadingNeverBlocksAndBytesAreWidenedAsLatin1) {
    auto child = Start("/bin/sh -c \"printf 'caf\\351 ok'; sleep 5\"");
    ASSERT_TRUE(child);
    const auto before = std::chrono::steady_clock::now();
    wxString text;
    while (text.length() < 7 && std::chrono::steady_clock::now() - before < std::chrono::seconds(5))
        text += child->ReadOutput();
    EXPECT_EQ(text + child->ReadOutput(), wxString::FromUTF8("café ok")) << "no waiting for more";
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(4));
    kill(static_cast<pid_t>(child->Pid()), SIGKILL);
}

TEST(PosixChildProcess, EnvironmentGetsThePathPrefixLibraryFolderAndVariablesButThePanelsStays) {
    const wxString path = wxGetenv("PATH");
    ScopedEnv scan("PHP_INI_SCAN_DIR", "/etc/php/conf.d");
    ChildSpec launch;
    launch.commandLine = "/bin/sh -c \"echo \\\"$PATH|${PHP_INI_SCAN_DIR-unset}|${EXTRA-unset}|"
                         "${LD_LIBRARY_PATH-unset}\\\"\"";
    launch.pathPrefix = "/opt/php:";
    launch.environment = {{"PHP_INI_SCAN_DIR", ""}, {"EXTRA", "1"}};
    struct Case {
        const char *folder, *inherited, *expected;
    };
    for (const Case& c : {Case{"", "/usr/local/lib", "/usr/local/lib"},
                          Case{"/tree/lib", "/usr/local/lib", "/tree/lib:/usr/local/lib"},
                          Case{"/tree/lib", "", "/tree/lib"}}) {
        ScopedEnv libraries("LD_LIBRARY_PATH", c.inherited);
        launch.libraryFolder = c.folder;
        auto child = Platform::Get().StartHidden(launch);
        ASSERT_TRUE(child);
        EXPECT_EQ(OutputUntilEnd(*child), "/opt/php:" + path + "||1|" + c.expected + "\n");
    }
    EXPECT_EQ(wxGetenv("PATH") + wxString(wxGetenv("PHP_INI_SCAN_DIR")), path + "/etc/php/conf.d");
}

TEST(PosixChildProcess, RunsInItsFolderAndSessionFromAnUnquotedPathWithBlanks) {
    TempDir dir;
    MakeTreeFolder(dir.Path(), "my stack/bin");
    MakeTreeFolder(dir.Path(), "work dir");
    // "my" next to "my stack" is a folder, not a program: the prefix search goes on.
    MakeTreeFolder(dir.Path(), "my");
    const wxString script = dir.File("my stack/bin/show args");
    WriteBytes(script, "#!/bin/sh\npwd; echo \"$1|$2\"; ps -o sid= -p $$ | tr -d ' '; echo $$\n");
    chmod(script.utf8_str(), 0755);
    auto child = Start(script + " \"first arg\" second", dir.File("work dir"));
    ASSERT_TRUE(child);
    const wxArrayString lines = wxSplit(OutputUntilEnd(*child).Trim(), '\n');
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0] + lines[1], dir.File("work dir") + "first arg|second");
    EXPECT_EQ(lines[2], lines[3]); // leader of its own session
}

TEST(PosixChildProcess, AProgramThatCannotRunGivesNoChild) {
    TempDir dir;
    WriteBytes(dir.File("not executable"), "data");
    EXPECT_FALSE(Start(dir.File("missing")) || Start("/bin/true", dir.File("missing")) ||
                 Start(dir.File("not executable")) || Start(""));
}
