#include "apache/HelpCatalogue.h"

#include <wx/arrstr.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace {

// Paragraphs one empty line apart, each non-empty plain ASCII (no control characters, double or
// framing blanks) ending a sentence; a lone or a third line feed stays inside a paragraph.
void ExpectParagraphs(const wxString& name, wxString body, const wxString& end = ".") {
    body.Replace("\n\n", "\x01");
    for (const wxString& paragraph : wxSplit(body, '\x01', '\0'))
        EXPECT_TRUE(!paragraph.empty() && !paragraph.Contains("  ") &&
                    paragraph.Strip(wxString::both) == paragraph && paragraph.EndsWith(end) &&
                    std::all_of(paragraph.begin(), paragraph.end(),
                                [](wxUniChar c) { return c >= ' ' && c.GetValue() <= 126; }))
            << name << ": " << paragraph;
}

} // namespace

TEST(HelpCatalogue, HoldsEveryNameOnceLaidOutAsItsKindRequires) {
    const HelpCatalogue catalogue;
    const std::vector<wxString> modules = HelpCatalogue::ModuleNames();
    const std::vector<wxString> extensions = HelpCatalogue::ExtensionNames();
    ASSERT_EQ(modules.size(), 67u);
    ASSERT_EQ(extensions.size(), 177u);
    EXPECT_EQ(modules.front() + modules[44] + modules.back(),
              "actions_modulelog_config_modulevhost_alias_module");
    EXPECT_EQ(extensions.front() + extensions[49] + extensions.back(), "apachehwzlib");
    std::set<wxString> all(modules.begin(), modules.end());
    all.insert(extensions.begin(), extensions.end());
    EXPECT_EQ(all.size(), 244u) << "no name twice, not even across kinds";

    EXPECT_TRUE(catalogue.ModuleDescription("rewrite_module")
                    .StartsWith("Provides a rule-based rewriting engine to rewrite requested URLs "
                                "on the fly\n\nThis module uses a rule-based rewriting engine"));
    EXPECT_EQ(catalogue.ModuleDescription("rewrite_module ") +
                  catalogue.ExtensionDescription("CURL"),
              "No Description AvailableNo Description Available")
        << "exact names only";
    EXPECT_EQ(catalogue.ExtensionDescription("zip"),
              " This extension enables you to transparently read or write ZIP compressed archives "
              "and the files inside them. \n\n ");
    // Modules: a summary line without a full stop, then paragraphs.
    for (const wxString& name : modules) {
        const wxString text = catalogue.ModuleDescription(name);
        const wxString summary = text.BeforeFirst('\n');
        ExpectParagraphs(name, summary, "");
        EXPECT_FALSE(summary.EndsWith(".")) << name;
        EXPECT_TRUE(text.StartsWith(summary + "\n\n")) << name;
        ExpectParagraphs(name, text.Mid(summary.length() + 2));
        EXPECT_GE(text.length() - summary.length(), 150u) << name;
        EXPECT_LE(text.length(), 2200u) << name;
        EXPECT_TRUE(catalogue.ModuleLink(name).StartsWith("http://httpd.apache.org/docs/2.2/mod/"))
            << name;
    }
    // Extensions: paragraphs each framed by blanks.
    for (const wxString& name : extensions) {
        wxString text = catalogue.ExtensionDescription(name);
        ASSERT_TRUE(text.StartsWith(" ") && text.EndsWith(". \n\n ")) << name;
        EXPECT_GE(text.length(), 100u) << name;
        EXPECT_LE(text.length(), 2200u) << name;
        text.Replace(" \n\n ", "\n\n");
        ExpectParagraphs(name, text.Mid(1, text.length() - 3));
        EXPECT_TRUE(catalogue.ExtensionLink(name).StartsWith("http://www.php.net/manual/en/"))
            << name;
    }
}
