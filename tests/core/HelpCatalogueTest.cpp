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

// The blocks of text between empty lines; a lone or a tripled line feed stays in a block.
wxArrayString Paragraphs(wxString text) {
    text.Replace("\n\n", "\x01");
    return wxSplit(text, '\x01', '\0');
}

// Non-empty plain ASCII without control characters, double blanks or blanks around it.
bool IsPlainLine(const wxString& text) {
    for (wxUniChar c : text)
        if (c < ' ' || c.GetValue() > 126)
            return false;
    return !text.empty() && !text.Contains("  ") && text.Strip(wxString::both) == text;
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

TEST(HelpCatalogue, ModuleTextsAreASummaryLineThenParagraphs) {
    EXPECT_TRUE(Catalogue()
                    .ModuleDescription("rewrite_module")
                    .StartsWith("Provides a rule-based rewriting engine to rewrite requested URLs "
                                "on the fly\n\nThis module uses a rule-based rewriting engine"));
    for (const wxString& name : HelpCatalogue::ModuleNames()) {
        const wxString text = Catalogue().ModuleDescription(name);
        const wxArrayString blocks = Paragraphs(text);
        ASSERT_GE(blocks.size(), 2u) << name;
        EXPECT_FALSE(blocks[0].EndsWith(".")) << name;
        for (size_t i = 0; i < blocks.size(); ++i) {
            EXPECT_TRUE(IsPlainLine(blocks[i])) << name << ": " << blocks[i];
            EXPECT_TRUE(i == 0 || blocks[i].EndsWith(".")) << name << " cut short: " << blocks[i];
        }
        EXPECT_GE(text.length() - blocks[0].length(), 150u) << name;
        EXPECT_LE(text.length(), 2200u) << name;
        EXPECT_FALSE(Catalogue().ModuleLink(name).empty()) << name;
    }
}

TEST(HelpCatalogue, ExtensionTextsAreParagraphsFramedByBlanks) {
    EXPECT_EQ(Catalogue().ExtensionDescription("zip"),
              " This extension enables you to transparently read or write ZIP compressed archives "
              "and the files inside them. \n\n ");
    for (const wxString& name : HelpCatalogue::ExtensionNames()) {
        const wxString text = Catalogue().ExtensionDescription(name);
        ASSERT_TRUE(text.EndsWith(" \n\n ")) << name << " does not end in a framed paragraph";
        for (const wxString& block : Paragraphs(text.Left(text.length() - 3))) {
            EXPECT_TRUE(block.StartsWith(" ") && block.EndsWith(". ")) << name << ": " << block;
            EXPECT_TRUE(IsPlainLine(block.Mid(1, block.length() - 2))) << name << ": " << block;
        }
        EXPECT_GE(text.length(), 100u) << name;
        EXPECT_LE(text.length(), 2200u) << name;
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
