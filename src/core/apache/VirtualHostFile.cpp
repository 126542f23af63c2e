#include "core/apache/VirtualHostFile.h"

#include "core/InstallPaths.h"
#include "core/SharedRegex.h"

#include <wx/filename.h>

#include <utility>

namespace {

// A compiled pattern and a cheap test that every line it matches passes: most lines of a
// template contain none of the directive words, and a word search costs a fraction of a match.
class LinePattern {
public:
    // word: a text every matching line contains; nullptr: the line holds nothing but blanks.
    LinePattern(const char* expression, const wchar_t* word) : expression(expression), word(word) {}

    bool Matches(const wxString& line) const { return MayMatch(line) && expression.Matches(line); }
    // Whether line matches, and then its whole match and sub-matches.
    bool Match(const wxString& line, std::vector<wxString>& groups) const {
        return MayMatch(line) && expression.Match(line, groups);
    }

private:
    bool MayMatch(const wxString& line) const {
        return word ? line.find(word) != wxString::npos
                    : line.find_first_not_of(L" \t") == wxString::npos;
    }

    SharedRegex expression;
    const wchar_t* word;
};

struct Patterns {
    LinePattern blockOpening{"<VirtualHost[\t ]*(.*)>", L"<VirtualHost"};
    LinePattern blockClosing{"</[\t ]*VirtualHost[\t ]*>", L"VirtualHost"};
    LinePattern serverName{"^[\t ]*ServerName[\t ]+\"?([^\"]*)\"?", L"ServerName"};
    LinePattern serverAlias{"^[\t ]*ServerAlias[\t ]+\"?([^\"]*)\"?", L"ServerAlias"};
    LinePattern documentRoot{"^[\t ]*DocumentRoot[\t ]+\"?([^\"]*)\"?", L"DocumentRoot"};
    LinePattern alias{"^[\t ]*Alias[\t ]+\"?([^\"]*)\"?[\t ]+\"?([^\"]*)\"?", L"Alias"};
    LinePattern directoryOpening{"<Directory \"?([^\"]*)\"?>", L"<Directory "};
    LinePattern blankLine{"^[\t ]*$", nullptr};
    LinePattern marker{"^#KOVIX", L"#KOVIX"};
    // Only blanks may surround the word here, tabs too in the virtual-host closing tag.
    LinePattern directoryClosing{"</ *Directory *>", L"Directory"};
    LinePattern options{"Options[\t ]*(.*)", L"Options"};
    LinePattern allowOverride{"AllowOverride[\t ]*(.*)", L"AllowOverride"};
};

const Patterns& Pattern() {
    static const Patterns patterns;
    return patterns;
}

// The template's lines; non-characters of a damaged file become U+FFFD (the regular expressions
// reject them). False when the file is missing or does not decode.
bool ReadTemplate(const wxString& path, TextDocument& document) {
    if (!document.Load(path, TextFiles::InvalidCharacters::Replace))
        return false;
    return !document.Lines().empty() || wxFileName::GetSize(path) == wxULongLong(0);
}

wxString WithoutLeadingBlanks(const wxString& text) {
    const size_t first = text.find_first_not_of(L" \t");
    return first == wxString::npos ? wxString() : text.substr(first);
}

wxString WithoutTrailingBlanks(const wxString& text) {
    const size_t last = text.find_last_not_of(L" \t");
    return last == wxString::npos ? wxString() : text.substr(0, last + 1);
}

// Takes a ServerName, ServerAlias or DocumentRoot line; a later line replaces an earlier one.
bool TakeHostValue(VirtualHostRecord& host, const wxString& line, std::vector<wxString>& groups) {
    const Patterns& p = Pattern();
    const std::pair<const LinePattern*, wxString VirtualHostRecord::*> values[] = {
        {&p.serverName, &VirtualHostRecord::ServerName},
        {&p.serverAlias, &VirtualHostRecord::ServerAlias},
        {&p.documentRoot, &VirtualHostRecord::DocumentRoot}};
    for (const auto& [pattern, field] : values)
        if (pattern->Match(line, groups)) {
            host.*field = groups[1];
            return true;
        }
    return false;
}

// Only the four known words count, each as a plain substring of the lower-cased argument:
// "-Indexes" sets Indexes, and "All" sets nothing at all.
void TakeOptions(DirectoryRecord& directory, const wxString& argument) {
    const wxString words = argument.Lower();
    directory.FollowSymLinks = words.Contains(L"followsymlinks");
    directory.Includes = words.Contains(L"includes");
    directory.Indexes = words.Contains(L"indexes");
    directory.MultiViews = words.Contains(L"multiviews");
}

// The template's lines outside <VirtualHost> blocks, separated by line ends. When the last line
// read is not empty, two line ends finish the last copied line and leave a blank line before the
// blocks; so each save adds a blank line there, as the previous blank line is copied too. When
// the last line read is an empty one inside an unclosed block, the first block that follows
// starts on the last copied line.
wxString LinesOutsideBlocks(const TextDocument& text) {
    const Patterns& p = Pattern();
    TextDocument::LineReader lines(text);
    wxString out;
    wxString lastLine;
    bool insideBlock = false;
    bool firstLine = true;
    while (!lines.AtEnd()) {
        lastLine = lines.ReadLine();
        if (p.blockOpening.Matches(lastLine)) {
            insideBlock = true;
        } else if (p.blockClosing.Matches(lastLine)) {
            insideBlock = false;
        } else if (!insideBlock) {
            if (!firstLine)
                out += '\n';
            firstLine = false;
            out += lastLine;
        }
    }
    if (!lastLine.empty())
        out += L"\n\n";
    return out;
}

void WriteQuotedValue(const wchar_t* directive, const wxString& value, wxString& out) {
    if (!value.empty())
        out << '\t' << directive << L" \"" << value << L"\"\n";
}

} // namespace

bool AliasRecord::operator==(const AliasRecord& other) const {
    return name == other.name && folder == other.folder;
}

bool DirectoryRecord::operator==(const DirectoryRecord& other) const {
    return others == other.others && path == other.path && FollowSymLinks == other.FollowSymLinks &&
           Includes == other.Includes && Indexes == other.Indexes &&
           MultiViews == other.MultiViews && AllowOverride == other.AllowOverride;
}

bool VirtualHostRecord::operator==(const VirtualHostRecord& other) const {
    return address == other.address && ServerName == other.ServerName &&
           ServerAlias == other.ServerAlias && DocumentRoot == other.DocumentRoot &&
           aliases == other.aliases && directories == other.directories && others == other.others;
}

bool LoadVirtualHostFile(VirtualHostFile& file, const InstallPaths& paths) {
    file.path = paths.ApacheSourceConfig();
    return ReadVirtualHosts(file);
}

bool ReadVirtualHosts(VirtualHostFile& file) {
    TextDocument text;
    if (!ReadTemplate(file.path, text))
        return false;
    const LinePattern& opening = Pattern().blockOpening;
    TextDocument::LineReader lines(text);
    std::vector<wxString> groups;
    while (!lines.AtEnd()) {
        if (!opening.Match(lines.ReadLine(), groups))
            continue;
        VirtualHostRecord host;
        host.address = groups[1];
        ReadVirtualHostBlock(host, lines);
        file.hosts.push_back(std::move(host));
    }
    return true;
}

void ReadVirtualHostBlock(VirtualHostRecord& host, TextDocument::LineReader& lines) {
    const Patterns& p = Pattern();
    std::vector<wxString> groups;
    while (!lines.AtEnd()) {
        const wxString& line = lines.ReadLine();
        if (p.blankLine.Matches(line) || p.marker.Matches(line))
            continue;
        if (p.blockClosing.Matches(line))
            return;
        if (TakeHostValue(host, line, groups))
            continue;
        if (p.alias.Match(line, groups)) {
            host.aliases.push_back(
                {WithoutTrailingBlanks(groups[1]), WithoutTrailingBlanks(groups[2])});
        } else if (p.directoryOpening.Match(line, groups)) {
            DirectoryRecord directory;
            directory.path = WithoutTrailingBlanks(groups[1]);
            ReadDirectoryBlock(directory, lines);
            host.directories.push_back(std::move(directory));
        } else {
            host.others.push_back(WithoutLeadingBlanks(line));
        }
    }
}

void ReadDirectoryBlock(DirectoryRecord& directory, TextDocument::LineReader& lines) {
    const Patterns& p = Pattern();
    std::vector<wxString> groups;
    while (!lines.AtEnd()) {
        const wxString& line = lines.ReadLine();
        if (p.directoryClosing.Matches(line))
            return;
        if (p.options.Match(line, groups))
            TakeOptions(directory, groups[1]);
        else if (p.allowOverride.Match(line, groups))
            directory.AllowOverride = groups[1].Lower().Contains(L"all");
        else
            directory.others.push_back(WithoutLeadingBlanks(line));
    }
}

bool WriteVirtualHosts(const VirtualHostFile& file) {
    TextDocument text;
    if (file.path.empty() || !ReadTemplate(file.path, text))
        return false;
    wxString out = LinesOutsideBlocks(text);
    for (const VirtualHostRecord& host : file.hosts)
        WriteVirtualHostBlock(host, out);
    return TextFiles::WriteAtomically(file.path, out);
}

void WriteVirtualHostBlock(const VirtualHostRecord& host, wxString& out) {
    out << L"<VirtualHost " << host.address << L">\n";
    out << L"#KOVIX Generate Virtual Host\n";
    WriteQuotedValue(L"DocumentRoot", host.DocumentRoot, out);
    WriteQuotedValue(L"ServerName", host.ServerName, out);
    WriteQuotedValue(L"ServerAlias", host.ServerAlias, out);
    for (const wxString& line : host.others)
        out << '\t' << line << '\n';
    for (const AliasRecord& alias : host.aliases)
        out << L"\tAlias \"" << alias.name << L"\" \"" << alias.folder << L"\"\n";
    for (const DirectoryRecord& directory : host.directories)
        WriteDirectoryBlock(directory, out);
    out << L"</VirtualHost>\n";
}

void WriteDirectoryBlock(const DirectoryRecord& directory, wxString& out) {
    out << L"\t<Directory \"" << directory.path << L"\">\n";
    out << (directory.AllowOverride ? L"\t\tAllowOverride All\n" : L"\t\tAllowOverride None\n");
    const std::pair<bool, const wchar_t*> options[] = {
        {directory.FollowSymLinks, L"FollowSymLinks "},
        {directory.Includes, L"Includes "},
        {directory.Indexes, L"Indexes "},
        {directory.MultiViews, L"MultiViews "}};
    wxString optionWords;
    for (const auto& [set, word] : options)
        if (set)
            optionWords += word;
    if (!optionWords.empty())
        out << L"\t\tOptions " << optionWords << '\n';
    for (const wxString& line : directory.others)
        out << L"\t\t" << line << '\n';
    out << L"\t</Directory>\n";
}
