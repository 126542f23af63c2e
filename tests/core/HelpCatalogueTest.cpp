#include "core/apache/HelpCatalogue.h"

#include <gtest/gtest.h>

#include <set>

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
    EXPECT_EQ(catalogue.ModuleDescription("rewrite_module ") +
                  catalogue.ExtensionDescription("CURL"),
              "No Description AvailableNo Description Available")
        << "exact names only";

    EXPECT_TRUE(catalogue.ModuleDescription("rewrite_module")
                    .StartsWith("Provides a rule-based rewriting engine to rewrite requested URLs "
                                "on the fly\n\nThis module uses a rule-based rewriting engine"));
    EXPECT_EQ(catalogue.ExtensionDescription("zip"),
              " This extension enables you to transparently read or write ZIP compressed archives "
              "and the files inside them. \n\n ");
    // Modules: a summary line without a full stop, an empty line, paragraphs ending a sentence.
    for (const wxString& name : modules) {
        const wxString text = catalogue.ModuleDescription(name);
        EXPECT_TRUE(text.Matches("?*\n\n?*.") && !text.BeforeFirst('\n').EndsWith(".") &&
                    !text.Contains("  "))
            << name;
        EXPECT_TRUE(catalogue.ModuleLink(name).StartsWith("http://httpd.apache.org/docs/2.2/mod/"))
            << name;
    }
    // Extensions: paragraphs each framed by blanks.
    for (const wxString& name : extensions) {
        EXPECT_TRUE(catalogue.ExtensionDescription(name).Matches(" ?*. \n\n ")) << name;
        EXPECT_TRUE(catalogue.ExtensionLink(name).StartsWith("http://www.php.net/manual/en/"))
            << name;
    }
}
