#pragma once

#include "core/InstallPaths.h"

#include <wx/string.h>

#include <cstdint>
#include <functional>
#include <vector>

class AppSettings;

// One placeholder of a template and the text that takes its place.
struct Replacement {
    wxString placeholder;
    wxString value;
};
using ReplacementList = std::vector<Replacement>;

// What a generation could not do. failures: one line for each template that could not be read
// and each output that could not be written; that output keeps its old content, so its server
// must not start on it. leftOut: what the sites' configuration had to leave out, one problem a
// line; Apache starts without it.
struct GenerationReport {
    wxString failures;
    wxString leftOut;
};

// Writes the live configuration files from their templates: the Apache set (httpd.conf, php.ini
// of the selected PHP version, the partners of conf/extra/*_source.conf) and my.ini. The lists
// are built afresh from the settings on each call; placeholders are replaced in list order. A
// template that cannot be read leaves its output file as it was, and is said.
class ConfigGenerator {
public:
    explicit ConfigGenerator(const InstallPaths& paths) : paths(paths) {}

    ReplacementList ApacheReplacements() const;
    ReplacementList MysqlReplacements() const;
    // The access lines that stand for {ONLINE_MODE}.
    static wxString AccessText(bool online);
    // Apache's Listen lines for port: every address online, the loopback addresses offline
    // (::1 only where the machine has it, or Apache would not start). protocol, when given, ends
    // each line (e.g. "https").
    static wxString ListenText(int port, bool online, const wxString& protocol = wxString());

    // Reads templatePath whole, replaces every occurrence of each placeholder in list order and
    // writes the result to outputPath as UTF-8. "" when done, else the line that says which file
    // could not be read or written and why.
    static wxString ExpandFile(const wxString& templatePath, const wxString& outputPath,
                               const ReplacementList& replacements);

    // Also writes the sites' configuration.
    GenerationReport GenerateApache() const;
    // The failures, as in GenerationReport.
    wxString GenerateMysql() const;

    // Fills in, in memory, the values the window settles at start-up that generation needs: the
    // first installed PHP version when none is stored, the port in force when the stored port is
    // not a number. For callers that must not store them on their own (kovixctl).
    static void ApplyStartupDefaults(AppSettings& settings, const InstallPaths& paths);

private:
    wxString GenerateExtraFolder(const ReplacementList& replacements) const;

    InstallPaths paths;
};

// Remembers a template's modification time (milliseconds) and tells when it changes. Primed at
// construction, so the first test reports no change. The path is asked for on every test: the
// PHP template moves with the selected version.
class TemplateWatch {
public:
    explicit TemplateWatch(std::function<wxString()> templatePath);

    static TemplateWatch ApacheSource(const InstallPaths& paths);
    static TemplateWatch PhpSource(const InstallPaths& paths);
    static TemplateWatch MysqlSource(const InstallPaths& paths);

    // True when the template exists and its time differs from the remembered one, which it then
    // becomes. A missing template answers false and keeps the remembered time.
    bool HasChanged();

private:
    std::function<wxString()> templatePath;
    std::int64_t remembered;
};
