#include "core/TextDocument.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <wx/dir.h>
#include <wx/ffile.h>
#include <wx/filefn.h>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using Lines = std::vector<std::pair<wxString, wxString>>;

Lines LinesOf(const TextDocument& document) {
    Lines lines;
    for (const TextDocument::Line& line : document.Lines())
        lines.emplace_back(line.text, line.ending);
    return lines;
}

mode_t ModeOf(const wxString& path) {
    struct stat status {};
    lstat(path.fn_str(), &status);
    return status.st_mode;
}

// Everything in the folder: a save must leave no scratch file behind.
std::vector<wxString> Entries(const wxString& folder) {
    std::vector<wxString> names;
    wxDir dir(folder);
    wxString name;
    for (bool found = dir.GetFirst(&name, "", wxDIR_FILES | wxDIR_DIRS | wxDIR_HIDDEN); found;
         found = dir.GetNext(&name))
        names.push_back(name);
    std::sort(names.begin(), names.end());
    return names;
}

// While it lives, no file of this process may grow past limit bytes: a write beyond fails as on
// a full disk (root included, which permissions would not stop).
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t limit) {
        getrlimit(RLIMIT_FSIZE, &saved);
        previousHandler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit lowered{limit, saved.rlim_max};
        setrlimit(RLIMIT_FSIZE, &lowered);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &saved);
        std::signal(SIGXFSZ, previousHandler);
    }

private:
    rlimit saved{};
    void (*previousHandler)(int) = nullptr;
};

} // namespace

TEST(TextDocument, KeepsEachLineEndAndGivesTheTextBack) {
    const wxString text = "a\r\nb\rc\n\n\r\nlast";
    const TextDocument document(text);
    EXPECT_EQ(
        LinesOf(document),
        (Lines{{"a", "\r\n"}, {"b", "\r"}, {"c", "\n"}, {"", "\n"}, {"", "\r\n"}, {"last", ""}}));
    EXPECT_EQ(document.Text(), text);
    EXPECT_EQ(LinesOf(TextDocument("a\n")), (Lines{{"a", "\n"}})) << "no empty line after the end";
    EXPECT_TRUE(TextDocument("").Lines().empty());

    TextDocument native(text);
    native.UseLineEnd("\n");
    EXPECT_EQ(native.Text(), "a\nb\nc\n\n\nlast") << "the last line gets no end it did not have";
}

// A NUL byte is plain ASCII: the reader must keep what follows it, on its line and after.
TEST(TextDocument, PlainAsciiWithNulBytesIsReadWhole) {
    TempDir dir;
    const wxString path = dir.Path() + "/nul.ini";
    const std::string bytes("a = On\0\0x\nb = Off\n", 18);
    wxFFile(path, "wb").Write(bytes.data(), bytes.size());

    TextDocument document;
    ASSERT_TRUE(document.Load(path));
    EXPECT_EQ(LinesOf(document), (Lines{{wxString(L"a = On\0\0x", 9), "\n"}, {"b = Off", "\n"}}));
    wxString text;
    ASSERT_TRUE(TextFiles::Read(path, text));
    EXPECT_EQ(text, document.Text());
}

TEST(TextDocument, SaveKeepsTheModeAndWritesThroughSymbolicLinks) {
    TempDir dir;
    const wxString target = dir.File("httpd_source.conf");
    WriteBytes(target, "old\n");
    chmod(target.fn_str(), 0640);
    // A relative link to a link: the chain is followed to the real file.
    ASSERT_EQ(symlink("httpd_source.conf", dir.File("first").fn_str()), 0);
    ASSERT_EQ(symlink("first", dir.File("second").fn_str()), 0);

    ASSERT_TRUE(TextDocument(wxString::FromUTF8("café\r\n")).Save(dir.File("second")));
    EXPECT_EQ(ReadBytes(target), "caf\xc3\xa9\r\n");
    EXPECT_EQ(ModeOf(target) & 07777, 0640u);
    EXPECT_TRUE(S_ISLNK(ModeOf(dir.File("first"))));
    EXPECT_TRUE(S_ISLNK(ModeOf(dir.File("second"))));
    EXPECT_EQ(Entries(dir.Path()), (std::vector<wxString>{"first", "httpd_source.conf", "second"}));

    ASSERT_TRUE(TextDocument("new file\n").Save(dir.File("kovix.ini")));
    EXPECT_EQ(ReadBytes(dir.File("kovix.ini")), "new file\n");
}

TEST(TextDocument, FailedSaveLeavesTheOriginalByteIdenticalAndNoScratchFile) {
    TempDir dir;
    const wxString target = dir.File("php_source.ini");
    const std::string original = "short_open_tag = Off\r\n";
    WriteBytes(target, original);
    chmod(target.fn_str(), 0600);
    ASSERT_EQ(symlink("php_source.ini", dir.File("link.ini").fn_str()), 0);
    const TextDocument large(wxString('x', 4096) + "\n");
    {
        const FileSizeLimit limit(1024); // the scratch file fills up half-way
        EXPECT_FALSE(large.Save(target));
        EXPECT_FALSE(large.Save(dir.File("link.ini")));
    }
    EXPECT_EQ(ReadBytes(target), original);
    EXPECT_EQ(ModeOf(target) & 07777, 0600u);
    EXPECT_TRUE(S_ISLNK(ModeOf(dir.File("link.ini"))));

    // A name that the rename cannot take: a folder with something in it.
    wxMkdir(dir.File("taken"));
    WriteBytes(dir.File("taken/inside"), "");
    EXPECT_FALSE(large.Save(dir.File("taken")));
    EXPECT_EQ(Entries(dir.Path()), (std::vector<wxString>{"link.ini", "php_source.ini", "taken"}));
}

// Two workers saving the same file at once: each save is whole, and no scratch name is shared
// (a shared one would let one save rename the other's half-written file).
TEST(TextDocument, ParallelSavesNeverMixOrLeaveScratchFiles) {
    TempDir dir;
    const wxString target = dir.File("php_source.ini");
    const TextDocument documents[] = {TextDocument(wxString('a', 200000) + "\n"),
                                      TextDocument(wxString('b', 100000) + "\n")};
    std::vector<std::thread> workers;
    for (const TextDocument& document : documents)
        workers.emplace_back([&document, &target] {
            for (int save = 0; save < 40; ++save)
                EXPECT_TRUE(document.Save(target));
        });
    for (std::thread& worker : workers)
        worker.join();
    const wxString saved = wxString::FromUTF8(ReadBytes(target));
    EXPECT_TRUE(saved == documents[0].Text() || saved == documents[1].Text());
    EXPECT_EQ(Entries(dir.Path()), std::vector<wxString>{"php_source.ini"});
}
