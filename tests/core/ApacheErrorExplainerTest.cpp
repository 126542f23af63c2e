#include "core/servers/ApacheErrorExplainer.h"

#include "core/AppSettings.h"
#include "core/lang/LangTable.h"
#include "support/TempDir.h"
#include "support/TreeFiles.h"

#include <gtest/gtest.h>

namespace {

// The offline access text spans three lines where its placeholder stood on one.
const std::string apacheTemplate = "Listen {APACHE_PORT}\n"
                                   "<Directory \"{DOCUMENTPATH}\">\n"
                                   "\t{ONLINE_MODE}\tAllow from ::1\n"
                                   "</Directory>\n"
                                   "  Broken line  \n";

class ApacheErrorExplainerTest : public testing::Test {
protected:
    ApacheErrorExplainerTest() : tree("kovix explain"), paths(tree.Path(), settings) {
        InitLangTable(settings, "en");
        WriteTreeFile(tree.Path(), "apache/conf/httpd_source.conf", apacheTemplate);
        WriteTreeFile(tree.Path(), "apache/conf/extra/tools_source.conf", "one\ntwo\n");
    }

    wxString SyntaxError(int line, const wxString& generated) const {
        return wxString::Format("AH00526: Syntax error on line %d of %s:\nInvalid command\n", line,
                                tree.File(generated));
    }

    TempDir tree;
    AppSettings settings;
    InstallPaths paths;
};

} // namespace

TEST_F(ApacheErrorExplainerTest, LinesAfterAMultiLinePlaceholderMapBackToTheTemplate) {
    const ReplacementList replacements = ConfigGenerator(paths).ApacheReplacements();
    const size_t expected[] = {1, 2, 3, 3, 3, 3, 4, 5};
    for (size_t generated = 1; generated <= 8; ++generated)
        EXPECT_EQ(ApacheErrorExplainer::TemplateLine(apacheTemplate, generated, replacements),
                  expected[generated - 1])
            << generated;
    EXPECT_EQ(ApacheErrorExplainer::TemplateLine(apacheTemplate, 9, replacements), 0u);
}

TEST_F(ApacheErrorExplainerTest, NamesTheTemplateOfEachGeneratedFileAndNothingElse) {
    const ApacheErrorExplainer explainer(paths);
    EXPECT_EQ(explainer.Explain(SyntaxError(8, "apache/conf/httpd.conf")),
              "httpd_source.conf line 5: Broken line\n");
    EXPECT_EQ(explainer.Explain(SyntaxError(2, "apache/conf/extra/tools.conf")),
              "tools_source.conf line 2: two\n");
    EXPECT_EQ(explainer.Explain(SyntaxError(1, "apache/conf/extra/other.conf")), "");
    EXPECT_EQ(explainer.Explain(SyntaxError(1, "apache/conf/sites.conf")), "");
    EXPECT_EQ(explainer.Explain("AH00072: make_sock: could not bind to address\n"), "");
}
