#include "core/servers/ApacheErrorExplainer.h"

#include "core/SharedRegex.h"
#include "core/TextFiles.h"
#include "core/lang/LangTable.h"

#include <wx/arrstr.h>
#include <wx/filename.h>

namespace {

// Apache counts lines by their line feeds, and so does this; a last line feed starts no line.
std::vector<wxString> SplitLines(const wxString& text) {
    const wxArrayString lines = wxSplit(text, '\n', '\0');
    std::vector<wxString> split(lines.begin(), lines.end());
    if (!split.empty() && split.back().empty())
        split.pop_back();
    return split;
}

bool SameFile(const wxString& one, const wxString& other) {
    return wxFileName(one).SameAs(wxFileName(other));
}

} // namespace

wxString ApacheErrorExplainer::Explain(const wxString& output) const {
    static const SharedRegex syntaxError("AH00526: Syntax error on line ([0-9]+) of (.+):$");
    if (!output.Contains("AH00526"))
        return wxString();
    wxString explained;
    std::vector<wxString> groups;
    for (const wxString& line : SplitLines(output)) {
        unsigned long number = 0;
        if (syntaxError.Match(wxString(line).Trim(), groups) && groups[1].ToULong(&number))
            explained += ExplainOne(groups[2], number);
    }
    return explained;
}

wxString ApacheErrorExplainer::ExplainOne(const wxString& generated, size_t generatedLine) const {
    const wxString templatePath = TemplateOf(generated);
    wxString text;
    if (templatePath.empty() || !TextFiles::Read(templatePath, text))
        return wxString();
    const ReplacementList replacements = ConfigGenerator(paths).ApacheReplacements();
    const size_t line = TemplateLine(text, generatedLine, replacements);
    if (line == 0)
        return wxString();
    wxString source = SplitLines(text)[line - 1];
    return wxString::Format(GetLangText("TEMPLATE_LINE"), wxFileName(templatePath).GetFullName(),
                            static_cast<int>(line), source.Trim().Trim(false)) +
           "\n";
}

size_t ApacheErrorExplainer::TemplateLine(const wxString& templateText, size_t generatedLine,
                                          const ReplacementList& replacements) {
    const std::vector<wxString> lines = SplitLines(templateText);
    size_t generatedSoFar = 0;
    for (size_t index = 0; index < lines.size(); ++index) {
        wxString expanded = lines[index];
        for (const Replacement& replacement : replacements)
            expanded.Replace(replacement.placeholder, replacement.value, true);
        generatedSoFar += 1 + static_cast<size_t>(expanded.Freq('\n'));
        if (generatedLine <= generatedSoFar)
            return index + 1;
    }
    return 0;
}

// httpd.conf comes from httpd_source.conf; conf/extra/NAME.conf from NAME_source.conf there.
wxString ApacheErrorExplainer::TemplateOf(const wxString& generated) const {
    if (SameFile(generated, paths.ApacheLiveConfig()))
        return paths.ApacheSourceConfig();
    const wxFileName file(generated);
    const wxFileName extra(paths.ApacheExtraFolder(), file.GetName() + "_source.conf");
    if (file.GetExt() == "conf" && SameFile(file.GetPath(), extra.GetPath()) && extra.FileExists())
        return extra.GetFullPath();
    return wxString();
}
