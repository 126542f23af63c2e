// kovixctl logs and mail on a tree without servers.
#include "ctl/CtlTesting.h"
#include "platform/Platform.h"

#include <nlohmann/json.hpp>
#include <wx/filefn.h>

#include <chrono>
#include <thread>

using CtlTools = CtlTest;

namespace {

// What a running child printed, waited for until it contains text or 5 s pass.
bool WaitForOutput(ChildProcess& child, wxString& output, const wxString& text) {
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (output.Find(text) == wxNOT_FOUND && std::chrono::steady_clock::now() < giveUp) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        output += child.ReadOutput();
    }
    return output.Find(text) != wxNOT_FOUND;
}

} // namespace

TEST_F(CtlTools, LogsPrintsTheLastLinesAndFollowsTheLogAcrossAClean) {
    Write("apache/logs/access.log", "one\ntwo\nthree\n");
    EXPECT_EQ(Ctl({"logs", "apache-access", "--lines", "2"}).out, "two\nthree\n");
    const CommandResult missing = Ctl({"logs", "php"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_NE(missing.err.Find("php_error.log"), wxNOT_FOUND);
    for (const std::vector<wxString>& usage :
         {std::vector<wxString>{"logs", "nginx"}, {"logs", "php", "--lines", "many"}, {"logs"}})
        EXPECT_EQ(Ctl(usage).exitCode, 2) << usage.back();

    ChildSpec follow;
    follow.commandLine = wxString(KOVIXCTL_PATH) + " --root \"" + tree.Path() +
                         "\" logs apache-access --follow --lines 1";
    std::unique_ptr<ChildProcess> child = Platform::Get().StartHidden(follow);
    ASSERT_TRUE(child);
    wxString output;
    EXPECT_TRUE(WaitForOutput(*child, output, "three\n"));
    Write("apache/logs/access.log", "one\ntwo\nthree\nfour\n");
    EXPECT_TRUE(WaitForOutput(*child, output, "three\nfour\n"));
    ASSERT_TRUE(wxRemoveFile(tree.File("apache/logs/access.log")));
    Write("apache/logs/access.log", "after the clean\n");
    EXPECT_TRUE(WaitForOutput(*child, output, "four\nafter the clean\n")) << output;
    Platform::Get().KillProcess(child->Pid());
    while (child->IsActive())
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

TEST_F(CtlTools, MailCatchStoresWhateverArrivesAndShowsIt) {
    const std::string big(20 * 1024 * 1024, 'y');
    Write("big.eml", "Subject: big one\n\n" + big);
    Write("bare.txt", "no header here, only words\n");
    for (const char* file : {"big.eml", "bare.txt"}) {
        const CommandResult caught = RunShell(wxString(KOVIXCTL_PATH) + " --root \"" + tree.Path() +
                                              "\" mail catch < \"" + tree.File(file) + "\"");
        ASSERT_EQ(caught.exitCode, 0) << caught.err;
    }
    const CommandResult list = Ctl({"mail", "list", "--json"});
    const nlohmann::json messages = nlohmann::json::parse(list.out.utf8_string());
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_EQ(messages[1]["subject"], "big one");
    const wxString bareId = wxString::FromUTF8(messages[0]["id"].get<std::string>());
    EXPECT_EQ(Ctl({"mail", "show", bareId}).out, "\nno header here, only words\n\n");
    const wxString bigId = wxString::FromUTF8(messages[1]["id"].get<std::string>());
    EXPECT_EQ(Read("mail/" + bigId + ".eml").size(), big.size() + 18);

    // A file where the mail folder should be: the message cannot be kept, and PHP is told so.
    ASSERT_EQ(Ctl({"mail", "clear"}).exitCode, 0);
    ASSERT_TRUE(wxRmdir(tree.File("mail")));
    Write("mail", "in the way");
    const CommandResult refused = RunShell(wxString(KOVIXCTL_PATH) + " --root \"" + tree.Path() +
                                           "\" mail catch < \"" + tree.File("bare.txt") + "\"");
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_NE(refused.err.Find("The message cannot be stored"), wxNOT_FOUND) << refused.err;
}
