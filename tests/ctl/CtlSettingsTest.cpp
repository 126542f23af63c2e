#include "support/CommandRunner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <wx/filefn.h>

namespace {

CommandResult Ctl(const TempDir& root, std::vector<wxString> args) {
    args.insert(args.begin(), {KOVIXCTL_PATH, "--root", root.Path()});
    return RunCommand(args);
}

} // namespace

TEST(CtlSettings, ReadOnlyCommandsWriteNothing) {
    TempDir root;
    EXPECT_EQ(Ctl(root, {"port"}).out, "80\n");
    EXPECT_EQ(Ctl(root, {"mode"}).out, "offline\n");
    EXPECT_EQ(Ctl(root, {"url", "phpinfo"}).out, "http://localhost/kovix/phpinfo.php\n");
    EXPECT_EQ(Ctl(root, {"text", "WWW_FODLER", "--json"}).exitCode, 0);
    EXPECT_FALSE(wxFileExists(root.File("kovix.ini")));
}

TEST(CtlSettings, SettersWriteOnlyWhatTheyChange) {
    TempDir root;
    WriteBytes(root.File("kovix.ini"), "ZZZ = \"kept\"\n");
    CommandResult set = Ctl(root, {"port", "8080"});
    EXPECT_EQ(set.exitCode, 0) << set.err;
    EXPECT_EQ(ReadBytes(root.File("kovix.ini")), "APACHE_PORT = \"8080\"\nZZZ = \"kept\"\n\n");
    EXPECT_EQ(Ctl(root, {"url", "site"}).out, "http://localhost:8080/\n");
    Ctl(root, {"mode", "online"});
    Ctl(root, {"lang", "fr"});
    EXPECT_EQ(ReadBytes(root.File("kovix.ini")),
              "APACHE_MODE = \"1\"\nAPACHE_PORT = \"8080\"\nCURRENT_LANG = \"fr\"\nZZZ = "
              "\"kept\"\n\n");
    EXPECT_EQ(Ctl(root, {"text", "START"}).out, wxString::FromUTF8("Démarrer\n"));
    EXPECT_EQ(Ctl(root, {"lang"}).out, "fr\n");
}

TEST(CtlSettings, UsageErrorsExitTwoAndWriteNothing) {
    TempDir root;
    const std::vector<std::vector<wxString>> bad = {{"port", "abc"},
                                                    {"port", "80", "81"},
                                                    {"mode", "maybe"},
                                                    {"lang", "de"},
                                                    {"nosuchcommand"},
                                                    {"--bogus", "port"},
                                                    {},
                                                    {"url", "ftp"}};
    for (const auto& args : bad) {
        CommandResult result = Ctl(root, args);
        EXPECT_EQ(result.exitCode, 2) << (args.empty() ? wxString("(none)") : args[0]);
        EXPECT_TRUE(result.err.Contains("usage: kovixctl"));
        EXPECT_TRUE(result.out.empty());
    }
    EXPECT_FALSE(wxFileExists(root.File("kovix.ini")));
}

TEST(CtlSettings, LanguageFollowsTheLocaleWhenUnset) {
    TempDir root;
    CommandResult french =
        RunShell("LC_ALL= LC_MESSAGES= LANG=fr_FR.UTF-8 '" KOVIXCTL_PATH "' --root '" +
                 root.Path() + "' text STOP");
    EXPECT_EQ(french.out, wxString::FromUTF8("Arrêter\n"));
    EXPECT_FALSE(wxFileExists(root.File("kovix.ini")));
}
