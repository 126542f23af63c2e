#include "core/mail/MailMessage.h"
#include "core/mail/MailStore.h"

#include "core/AppSettings.h"
#include "core/lang/LangTable.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <wx/dir.h>
#include <wx/filefn.h>

namespace {

wxString U(const char* utf8) {
    return wxString::FromUTF8(utf8);
}

} // namespace

TEST(MailMessage, HeadersAreUnfoldedAndEncodedWordsDecodedInAnyCharset) {
    const MailMessage message =
        MailMessage::Parse("From: =?ISO-8859-1?Q?Ren=E9?= <rene@site.test>\r\n"
                           "To: a@b.test,\r\n"
                           "\tc@d.test\r\n"
                           "Subject: =?UTF-8?B?aMOpbGxv?= =?UTF-8?Q?_w=C3=B6rld?= and more\r\n"
                           "X-Cyrillic: =?KOI8-R?B?8NLJ18XU?=\r\n"
                           "\r\n"
                           "body\r\n");
    EXPECT_EQ(message.Header("from"), U("René <rene@site.test>"));
    EXPECT_EQ(message.Header("TO"), "a@b.test, c@d.test");
    EXPECT_EQ(message.Header("Subject"), U("héllo wörld and more"));
    EXPECT_EQ(message.Header("X-Cyrillic"), U("Привет"));
    EXPECT_EQ(message.Header("Date"), "");
    EXPECT_EQ(message.Text(), "body\n");
}

TEST(MailMessage, TransferEncodingsAndCharsetsOfASinglePart) {
    struct Case {
        const char* fields;
        const char* body;
        const char* text;
    } cases[] = {
        {"Content-Type: text/plain; charset=UTF-8\nContent-Transfer-Encoding: quoted-printable\n",
         "Caf=C3=A9 cr=C3=A8me, a long line =\nwith a soft break, 3=3D3\n",
         "Café crème, a long line with a soft break, 3=3\n"},
        {"Content-Type: text/plain; charset=\"iso-8859-15\"\nContent-Transfer-Encoding: base64\n",
         "pCAxMA==\n", "€ 10"},
        {"Content-Type: text/plain\n", "d\xE9j\xE0 vu\n", "déjà vu\n"}, // not UTF-8: Latin-1
        {"Content-Type: text/plain; charset=x-unknown\n", "plain\n", "plain\n"},
    };
    for (const Case& test : cases) {
        const MailMessage message =
            MailMessage::Parse(std::string("Subject: s\n") + test.fields + "\n" + test.body);
        EXPECT_EQ(message.Text(), U(test.text)) << test.fields;
    }
}

TEST(MailMessage, MultipartPrefersPlainTextAndFallsBackToTheHtmlAsText) {
    const std::string alternative = "Subject: s\n"
                                    "Content-Type: multipart/mixed; boundary=\"outer\"\n\n"
                                    "preamble\n"
                                    "--outer\n"
                                    "Content-Type: multipart/alternative; boundary=inner\n\n"
                                    "--inner\n"
                                    "Content-Type: text/html; charset=utf-8\n\n"
                                    "<p>html</p>\n"
                                    "--inner\n"
                                    "Content-Type: text/plain; charset=utf-8\n"
                                    "Content-Transfer-Encoding: base64\n\n"
                                    "cGxhaW4gw6k=\n"
                                    "--inner--\n"
                                    "--outer\n"
                                    "Content-Type: text/plain\n"
                                    "Content-Disposition: attachment; filename=a.txt\n\n"
                                    "attached\n"
                                    "--outer--\n";
    EXPECT_EQ(MailMessage::Parse(alternative).Text(), U("plain é"));

    const std::string htmlOnly =
        "Subject: s\nMIME-Version: 1.0\nContent-Type: multipart/alternative; boundary=b\n\n"
        "--b\nContent-Type: text/html; charset=ISO-8859-1\n"
        "Content-Transfer-Encoding: quoted-printable\n\n"
        "<html><head><style>p {color: red}</style></head><body><h1>Bient=F4t</h1>"
        "<p>Fish &amp; chips<br>for &lt;two&gt;</p><script>alert(1)</script></body></html>\n"
        "--b--\n";
    EXPECT_EQ(MailMessage::Parse(htmlOnly).Text(), U("Bientôt\n\nFish & chips\nfor <two>"));
}

TEST(MailMessage, BytesWithoutAHeaderBlockAreAllText) {
    for (const char* raw : {"just a note\nsecond line\n", "\nstarts with a blank line\n", ""}) {
        const MailMessage message = MailMessage::Parse(raw);
        EXPECT_TRUE(message.Headers().empty()) << raw;
        EXPECT_EQ(message.Text(), U(raw));
    }
}

namespace {

struct MailFolder : testing::Test {
    MailFolder() { InitLangTable(AppSettings(), "en"); }

    TempDir dir;
    MailStore store{dir.File("mail")};

    wxString Catch(const std::string& bytes) {
        wxString id, error;
        EXPECT_TRUE(store.Catch(bytes, id, error)) << error;
        return id;
    }
};

} // namespace

TEST_F(MailFolder, MessagesAreListedNewestFirstReadBackWholeAndRemoved) {
    const std::string big = "Subject: big\n\n" + std::string(20 * 1024 * 1024, 'x');
    std::vector<wxString> ids;
    for (const std::string& raw : {std::string("Subject: one\nFrom: a@b.test\n\nhi\n"),
                                   std::string("no headers at all"), big})
        ids.push_back(Catch(raw));
    ASSERT_EQ(ids.size(), 3u);
    const std::vector<MailSummary> listed = store.List();
    ASSERT_EQ(listed.size(), 3u);
    EXPECT_EQ(listed[0].id, ids[2]);
    EXPECT_EQ(listed[0].subject, "big");
    EXPECT_EQ(listed[1].subject, "");
    EXPECT_EQ(listed[2].from, "a@b.test");
    std::string raw;
    ASSERT_TRUE(store.Read(ids[2], raw));
    EXPECT_EQ(raw, big);
    ASSERT_TRUE(store.Read(ids[1], raw));
    EXPECT_EQ(raw, "no headers at all");

    // Nothing of the scratch files stays, and ids that are no message name nothing.
    wxArrayString files;
    wxDir::GetAllFiles(dir.File("mail"), &files, "", wxDIR_FILES | wxDIR_HIDDEN);
    EXPECT_EQ(files.size(), 3u);
    for (const char* bad : {"../mail/x", ".catch-1-0", ""})
        EXPECT_FALSE(store.Read(bad, raw)) << bad;

    EXPECT_TRUE(store.Remove(ids[0]));
    EXPECT_FALSE(store.Remove(ids[0]));
    EXPECT_EQ(store.Clear(), "");
    EXPECT_TRUE(store.List().empty());
}

TEST_F(MailFolder, IdsOfOneSecondCountUpAndSortAsNumbers) {
    EXPECT_TRUE(MailStore::IsNewer("20261123-101500-10", "20261123-101500-9"));
    EXPECT_TRUE(MailStore::IsNewer("20261123-101501-1", "20261123-101500-12"));
    EXPECT_FALSE(MailStore::IsNewer("20261123-101500-1", "20261123-101500-1"));
    std::vector<wxString> ids;
    for (int i = 0; i < 12; ++i)
        ids.push_back(Catch("Subject: " + std::to_string(i) + "\n\n"));
    const std::vector<MailSummary> listed = store.List();
    ASSERT_EQ(listed.size(), ids.size());
    for (size_t i = 0; i < ids.size(); ++i)
        EXPECT_EQ(listed[i].subject, wxString::Format("%zu", ids.size() - 1 - i));
}

// A file where the folder should be stands for any folder that cannot be written (root writes
// into read-only folders).
TEST_F(MailFolder, AFolderThatCannotBeMadeRefusesWithItsName) {
    WriteBytes(dir.File("mail"), "not a folder");
    wxString id, error;
    EXPECT_FALSE(store.Catch("Subject: x\n\n", id, error));
    EXPECT_EQ(error, "Cannot write " + dir.File("mail") + ": File exists");
    EXPECT_EQ(ReadBytes(dir.File("mail")), "not a folder");
}
