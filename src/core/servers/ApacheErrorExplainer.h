#pragma once

#include "core/ConfigGenerator.h"
#include "core/InstallPaths.h"

#include <wx/string.h>

#include <vector>

// Points Apache's syntax errors back at the templates the user edits. Apache names a line of a
// generated file ("AH00526: Syntax error on line 12 of /tree/apache/conf/httpd.conf:"); generated
// files follow their templates line for line, except where a placeholder's value spans several
// lines ({ONLINE_MODE}): each template line is expanded again to count the lines it became.
class ApacheErrorExplainer {
public:
    explicit ApacheErrorExplainer(const InstallPaths& paths) : paths(paths) {}

    // For each syntax error in Apache's output whose file has a template, the template's name,
    // line number and text ("httpd_source.conf line 7: Foo bar"), a line each; "" when none.
    wxString Explain(const wxString& output) const;

    // The 1-based line of templateText that generated line generatedLine (1-based) came from; 0
    // when the generated file has no such line.
    static size_t TemplateLine(const wxString& templateText, size_t generatedLine,
                               const ReplacementList& replacements);

private:
    // The template of a generated Apache file; "" when it has none.
    wxString TemplateOf(const wxString& generated) const;
    wxString ExplainOne(const wxString& generated, size_t generatedLine) const;

    InstallPaths paths;
};
