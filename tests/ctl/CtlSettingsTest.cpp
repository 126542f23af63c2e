#include "ctl/CtlTesting.h"

#include <wx/filefn.h>

using CtlSettings = CtlTest;

TEST_F(CtlSettings, SettersWriteOnlyWhatTheyChange) {
    EXPECT_EQ(Ctl({"url", "phpinfo"}).out, "http://localhost/kovix/phpinfo.php\n");
    EXPECT_FALSE(wxFileExists(tree.File("kovix.ini"))) << "reading writes nothing";
    Write("kovix.ini", "ZZZ = \"kept\"\n");
    EXPECT_EQ(Ctl({"port", "8080"}).exitCode, 0);
    EXPECT_EQ(Read("kovix.ini"), "APACHE_PORT = \"8080\"\nZZZ = \"kept\"\n\n");
    EXPECT_EQ(Ctl({"url", "site"}).out, "http://localhost:8080/\n");
    Ctl({"mode", "online"});
    Ctl({"lang", "fr"});
    EXPECT_EQ(Read("kovix.ini"), "APACHE_MODE = \"1\"\nAPACHE_PORT = \"8080\"\nCURRENT_LANG = "
                                 "\"fr\"\nZZZ = \"kept\"\n\n");
    EXPECT_EQ(Ctl({"text", "START"}).out, wxString::FromUTF8("Démarrer\n"));
    EXPECT_EQ(Ctl({"lang"}).out, "fr\n");

    // Setting what is already there changes nothing, so nothing is written.
    Write("kovix.ini", "APACHE_PORT = \"8080\"\nZZZ=\"kept\"\n");
    EXPECT_EQ(Ctl({"port", "8080"}).exitCode, 0);
    EXPECT_EQ(Read("kovix.ini"), "APACHE_PORT = \"8080\"\nZZZ=\"kept\"\n");
}

TEST_F(CtlSettings, UsageErrorsExitTwoAndWriteNothing) {
    const std::vector<std::vector<wxString>> bad = {
        {"port", "abc"},        {"port", "80", "81"}, {"mode", "maybe"},   {"lang", "de"},
        {"url", "ftp"},         {"nosuchcommand"},    {"--bogus", "port"}, {},
        {"port", "--root"},     {"port", "-1"},       {"port", "0"},       {"port", "65536"},
        {"port", "99999999999"}};
    for (const auto& args : bad) {
        const CommandResult result = Ctl(args);
        EXPECT_EQ(result.exitCode, 2) << (args.empty() ? wxString("(none)") : args[0]);
        EXPECT_TRUE(result.err.Contains("usage: kovixctl"));
        EXPECT_TRUE(result.out.empty());
    }
    EXPECT_FALSE(wxFileExists(tree.File("kovix.ini")));
}

TEST_F(CtlSettings, AMissingRootFolderOrOneThatIsNoTreeIsNamed) {
    const wxString missing = tree.Path() + wxFILE_SEP_PATH + "missing";
    const CommandResult start = RunCommand({KOVIXCTL_PATH, "--root", missing, "start"});
    EXPECT_EQ(start.exitCode, 1);
    EXPECT_EQ(start.err, "No Kovix folder at " + missing + ": it does not exist.\n");
    for (const char* command : {"start", "generate"}) {
        const CommandResult empty = Ctl({command});
        EXPECT_EQ(empty.exitCode, 1);
        EXPECT_EQ(empty.err, tree.Path() + " is not a Kovix folder: it holds neither an apache nor "
                                           "a mysql folder.\n");
    }
}
