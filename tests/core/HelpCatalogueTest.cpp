#include "core/apache/HelpCatalogue.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <string>

TEST(HelpCatalogue, HoldsEveryNameOnceLaidOutAsItsKindRequires) {
    const HelpCatalogue& catalogue = HelpCatalogue::Get();
    const std::vector<wxString> modules = HelpCatalogue::ModuleNames();
    const std::vector<wxString> extensions = HelpCatalogue::ExtensionNames();
    ASSERT_EQ(modules.size(), 79u);
    ASSERT_EQ(extensions.size(), 177u);
    EXPECT_EQ(modules.front() + modules[48] + modules.back(),
              "access_compat_modulelog_config_modulevhost_alias_module");
    EXPECT_EQ(extensions.front() + extensions[49] + extensions.back(), "apachehwzlib");
    std::set<wxString> all(modules.begin(), modules.end());
    all.insert(extensions.begin(), extensions.end());
    EXPECT_EQ(all.size(), 256u) << "no name twice, not even across kinds";
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
        EXPECT_TRUE(catalogue.ModuleLink(name).StartsWith("http://httpd.apache.org/docs/2.4/mod/"))
            << name;
    }
    // Extensions: paragraphs each framed by blanks.
    for (const wxString& name : extensions) {
        EXPECT_TRUE(catalogue.ExtensionDescription(name).Matches(" ?*. \n\n ")) << name;
        EXPECT_TRUE(catalogue.ExtensionLink(name).StartsWith("http://www.php.net/manual/en/"))
            << name;
    }
}

// Every module line the shipped Apache template has, switched on or off, is described, and the
// process models link to their own manual pages.
TEST(HelpCatalogue, DescribesEveryModuleOfTheShippedTemplate) {
    const HelpCatalogue& catalogue = HelpCatalogue::Get();
    std::ifstream shipped(KOVIX_SOURCE_DIR "/stack/apache/conf/httpd_source.conf");
    std::string line;
    int modules = 0;
    while (std::getline(shipped, line))
        if (line.rfind("LoadModule ", 0) == 0 || line.rfind("#LoadModule ", 0) == 0) {
            const wxString key = wxString(line).AfterFirst(' ').BeforeFirst(' ');
            if (key.StartsWith("{"))
                continue; // the PHP module's name is filled in at generation
            ++modules;
            EXPECT_NE(catalogue.ModuleDescription(key), "No Description Available") << key;
        }
    EXPECT_GT(modules, 40);
    EXPECT_EQ(catalogue.ModuleLink("mpm_prefork_module"),
              "http://httpd.apache.org/docs/2.4/mod/prefork.html");
    EXPECT_EQ(catalogue.ModuleLink("mpm_event_module") + catalogue.ModuleLink("mpm_worker_module"),
              "http://httpd.apache.org/docs/2.4/mod/event.html"
              "http://httpd.apache.org/docs/2.4/mod/worker.html");
    EXPECT_EQ(catalogue.ModuleLink("rewrite_module"),
              "http://httpd.apache.org/docs/2.4/mod/mod_rewrite.html");
}
