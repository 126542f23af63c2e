#include "apache/HelpCatalogue.h"

#include <wx/arrstr.h>

#include <gtest/gtest.h>

#include <set>

namespace {

const HelpCatalogue& Catalogue() {
    static const HelpCatalogue catalogue;
    return catalogue;
}

// The names that sort before their predecessor; the catalogue is alphabetical otherwise.
std::vector<wxString> OutOfOrder(const std::vector<wxString>& names) {
    std::vector<wxString> found;
    for (size_t i = 1; i < names.size(); ++i)
        if (names[i] < names[i - 1])
            found.push_back(names[i]);
    return found;
}

// Non-empty plain ASCII without control characters, double blanks or blanks around it.
bool IsPlainLine(const wxString& text) {
    for (wxUniChar c : text)
        if (c < ' ' || c.GetValue() > 126)
            return false;
    return !text.empty() && !text.Contains("  ") && text.Strip(wxString::both) == text;
}

// Paragraphs one empty line apart (a lone or a third line feed stays inside a paragraph), each a
// plain line ending a sentence.
void ExpectParagraphs(const wxString& name, wxString body) {
    body.Replace("\n\n", "\x01");
    for (const wxString& paragraph : wxSplit(body, '\x01', '\0'))
        EXPECT_TRUE(IsPlainLine(paragraph) && paragraph.EndsWith(".")) << name << ": " << paragraph;
}

} // namespace

TEST(HelpCatalogue, HoldsEveryNameOnceInCatalogueOrder) {
    const std::vector<wxString> modules = HelpCatalogue::ModuleNames();
    const std::vector<wxString> extensions = HelpCatalogue::ExtensionNames();
    ASSERT_EQ(modules.size(), 67u);
    ASSERT_EQ(extensions.size(), 177u);
    EXPECT_EQ(modules.front(), "actions_module");
    EXPECT_EQ(modules.back(), "vhost_alias_module");
    EXPECT_EQ(extensions.front(), "apache");
    EXPECT_EQ(extensions.back(), "zlib");
    EXPECT_EQ(OutOfOrder(modules),
              (std::vector<wxString>{"dav_fs_module", "log_config_module", "mime_magic_module",
                                     "proxy_ajp_module"}));
    EXPECT_EQ(OutOfOrder(extensions),
              (std::vector<wxString>{"hw", "ibm-db2", "gd2", "sdo-das-xml", "sqlite"}));
    std::set<wxString> all(modules.begin(), modules.end());
    all.insert(extensions.begin(), extensions.end());
    EXPECT_EQ(all.size(), 244u) << "no name twice, not even across kinds";
}

// Module texts are a summary line, then paragraphs; extension texts are paragraphs, each framed by
// blanks. Paragraphs are plain, one empty line apart, and end a sentence.
TEST(HelpCatalogue, EveryTextIsLaidOutAsItsKindRequires) {
    EXPECT_TRUE(Catalogue()
                    .ModuleDescription("rewrite_module")
                    .StartsWith("Provides a rule-based rewriting engine to rewrite requested URLs "
                                "on the fly\n\nThis module uses a rule-based rewriting engine"));
    EXPECT_EQ(Catalogue().ExtensionDescription("zip"),
              " This extension enables you to transparently read or write ZIP compressed archives "
              "and the files inside them. \n\n ");
    for (const wxString& name : HelpCatalogue::ModuleNames()) {
        const wxString text = Catalogue().ModuleDescription(name);
        const wxString summary = text.BeforeFirst('\n');
        EXPECT_TRUE(IsPlainLine(summary) && !summary.EndsWith(".")) << name;
        EXPECT_TRUE(text.StartsWith(summary + "\n\n")) << name;
        ExpectParagraphs(name, text.Mid(summary.length() + 2));
        EXPECT_GE(text.length() - summary.length(), 150u) << name;
        EXPECT_LE(text.length(), 2200u) << name;
        EXPECT_FALSE(Catalogue().ModuleLink(name).empty()) << name;
    }
    for (const wxString& name : HelpCatalogue::ExtensionNames()) {
        wxString text = Catalogue().ExtensionDescription(name);
        ASSERT_TRUE(text.StartsWith(" ") && text.EndsWith(". \n\n ")) << name;
        EXPECT_GE(text.length(), 100u) << name;
        EXPECT_LE(text.length(), 2200u) << name;
        text.Replace(" \n\n ", "\n\n");
        ExpectParagraphs(name, text.Mid(1, text.length() - 3));
        EXPECT_FALSE(Catalogue().ExtensionLink(name).empty()) << name;
    }
}

TEST(HelpCatalogue, LinksPointAtTheDocumentationPages) {
    EXPECT_EQ(Catalogue().ModuleLink("rewrite_module"),
              "http://httpd.apache.org/docs/2.2/mod/mod_rewrite.html");
    EXPECT_EQ(Catalogue().ModuleLink("vhost_alias_module"),
              "http://httpd.apache.org/docs/2.2/mod/mod_vhost_alias.html");
    const std::pair<const char*, const char*> books[] = {
        {"curl", "curl"}, {"bz2", "bzip2"},        {"interbase", "ibase"},
        {"gd2", "image"}, {"sybase_ct", "sybase"}, {"ibm-db2", "ibm-db2"}};
    for (const auto& [name, book] : books)
        EXPECT_EQ(Catalogue().ExtensionLink(name),
                  wxString("http://www.php.net/manual/en/book.") + book + ".php");
}

TEST(HelpCatalogue, UnknownNamesGetTheFallbacks) {
    // Hand-added modules, other kinds, wrong case, stray blanks and the empty name.
    for (const char* name : {"php_module", "", "curl", "Rewrite_module", "rewrite_module "}) {
        EXPECT_EQ(Catalogue().ModuleDescription(name), "No Description Available") << name;
        EXPECT_EQ(Catalogue().ModuleLink(name), "") << name;
    }
    for (const char* name : {"xdebug", "", "rewrite_module", "CURL", " curl", "php_curl.dll"}) {
        EXPECT_EQ(Catalogue().ExtensionDescription(name), "No Description Available") << name;
        EXPECT_EQ(Catalogue().ExtensionLink(name), "") << name;
    }
    EXPECT_NE(Catalogue().ExtensionDescription("apache"), "No Description Available");
}
