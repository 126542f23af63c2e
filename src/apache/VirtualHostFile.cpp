#include "apache/VirtualHostFile.h"

#include "core/InstallPaths.h"
#include "core/TextFiles.h"
#include "core/TextLineReader.h"

#include <wx/filename.h>
#include <wx/regex.h>

#include <utility>

namespace {

struct Patterns {
    wxRegEx blockOpening{"<VirtualHost[\t ]*(.*)>"};
    wxRegEx blockClosing{"</[\t ]*VirtualHost[\t ]*>"};
    wxRegEx serverName{"^[\t ]*ServerName[\t ]+\"?([^\"]*)\"?"};
    wxRegEx serverAlias{"^[\t ]*ServerAlias[\t ]+\"?([^\"]*)\"?"};
    wxRegEx documentRoot{"^[\t ]*DocumentRoot[\t ]+\"?([^\"]*)\"?"};
    wxRegEx alias{"^[\t ]*Alias[\t ]+\"?([^\"]*)\"?[\t ]+\"?([^\"]*)\"?"};
    wxRegEx directoryOpening{"<Directory \"?([^\"]*)\"?>"};
    wxRegEx blankLine{"^[\t ]*$"};
    wxRegEx marker{"^#KOVIX"};
    // Only blanks may surround the word here, tabs too in the virtual-host closing tag.
    wxRegEx directoryClosing{"</ *Directory *>"};
    wxRegEx options{"Options[\t ]*(.*)"};
    wxRegEx allowOverride{"AllowOverride[\t ]*(.*)"};
};

const Patterns& Pattern() {
    static const Patterns patterns;
    return patterns;
}

bool IsInvalidCodePoint(wxUint32 code) {
    return (code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF;
}

// The template's text. Code points that are not characters (a byte sequence of a damaged file can
// decode to them) become U+FFFD: the regular expressions reject them, and the UTF-8 writer would
// turn the whole file into nothing. False when the file is missing or does not decode.
bool ReadTemplate(const wxString& path, wxString& text) {
    if (!TextFiles::Read(path, text))
        return false;
    if (text.empty() && wxFileName::GetSize(path) != wxULongLong(0))
        return false;
    for (size_t i = 0; i < text.length(); ++i)
        if (IsInvalidCodePoint(text[i].GetValue()))
            text[i] = wxUniChar(0xFFFD);
    return true;
}

wxString WithoutLeadingBlanks(const wxString& text) {
    const size_t first = text.find_first_not_of(" \t");
    return first == wxString::npos ? wxString() : text.substr(first);
}

wxString WithoutTrailingBlanks(const wxString& text) {
    const size_t last = text.find_last_not_of(" \t");
    return last == wxString::npos ? wxString() : text.substr(0, last + 1);
}

// Takes a ServerName, ServerAlias or DocumentRoot line; a later line replaces an earlier one.
bool TakeHostValue(VirtualHostRecord& host, const wxString& line) {
    const Patterns& p = Pattern();
    const std::pair<const wxRegEx*, wxString VirtualHostRecord::*> values[] = {
        {&p.serverName, &VirtualHostRecord::ServerName},
        {&p.serverAlias, &VirtualHostRecord::ServerAlias},
        {&p.documentRoot, &VirtualHostRecord::DocumentRoot}};
    for (const auto& [pattern, field] : values)
        if (pattern->Matches(line)) {
            host.*field = pattern->GetMatch(line, 1);
            return true;
        }
    return false;
}

// Only the four known words count, each as a plain substring of the lower-cased argument:
// "-Indexes" sets Indexes, and "All" sets nothing at all.
void TakeOptions(DirectoryRecord& directory, const wxString& argument) {
    const wxString words = argument.Lower();
    directory.FollowSymLinks = words.Contains("followsymlinks");
    directory.Includes = words.Contains("includes");
    directory.Indexes = words.Contains("indexes");
    directory.MultiViews = words.Contains("multiviews");
}

// The template's lines outside <VirtualHost> blocks, separated by line ends. When the last line
// read is not empty, two line ends finish the last copied line and leave a blank line before the
// blocks; so each save adds a blank line there, as the previous blank line is copied too.
wxString LinesOutsideBlocks(const wxString& text) {
    const Patterns& p = Pattern();
    TextLineReader lines(text);
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
        out += "\n\n";
    return out;
}

void WriteQuotedValue(const char* directive, const wxString& value, wxString& out) {
    if (!value.empty())
        out << '\t' << directive << " \"" << value << "\"\n";
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

wxString VirtualHostFile::ModuleDescription(const wxString& name) const {
    return catalogue.ModuleDescription(name);
}

wxString VirtualHostFile::ModuleLink(const wxString& name) const {
    return catalogue.ModuleLink(name);
}

wxString VirtualHostFile::ExtensionDescription(const wxString& name) const {
    return catalogue.ExtensionDescription(name);
}

wxString VirtualHostFile::ExtensionLink(const wxString& name) const {
    return catalogue.ExtensionLink(name);
}

bool LoadVirtualHostFile(VirtualHostFile& file, const InstallPaths& paths) {
    file.path = paths.ApacheSourceConfig();
    return ReadVirtualHosts(file);
}

bool ReadVirtualHosts(VirtualHostFile& file) {
    wxString text;
    if (!ReadTemplate(file.path, text))
        return false;
    const wxRegEx& opening = Pattern().blockOpening;
    TextLineReader lines(text);
    while (!lines.AtEnd()) {
        const wxString line = lines.ReadLine();
        if (!opening.Matches(line))
            continue;
        VirtualHostRecord host;
        host.address = opening.GetMatch(line, 1);
        ReadVirtualHostBlock(host, lines);
        file.hosts.push_back(std::move(host));
    }
    return true;
}

void ReadVirtualHostBlock(VirtualHostRecord& host, TextLineReader& lines) {
    const Patterns& p = Pattern();
    while (!lines.AtEnd()) {
        const wxString line = lines.ReadLine();
        if (p.blankLine.Matches(line) || p.marker.Matches(line))
            continue;
        if (p.blockClosing.Matches(line))
            return;
        if (TakeHostValue(host, line))
            continue;
        if (p.alias.Matches(line)) {
            host.aliases.push_back({WithoutTrailingBlanks(p.alias.GetMatch(line, 1)),
                                    WithoutTrailingBlanks(p.alias.GetMatch(line, 2))});
        } else if (p.directoryOpening.Matches(line)) {
            DirectoryRecord directory;
            directory.path = WithoutTrailingBlanks(p.directoryOpening.GetMatch(line, 1));
            ReadDirectoryBlock(directory, lines);
            host.directories.push_back(std::move(directory));
        } else {
            host.others.push_back(WithoutLeadingBlanks(line));
        }
    }
}

void ReadDirectoryBlock(DirectoryRecord& directory, TextLineReader& lines) {
    const Patterns& p = Pattern();
    while (!lines.AtEnd()) {
        const wxString line = lines.ReadLine();
        if (p.directoryClosing.Matches(line))
            return;
        if (p.options.Matches(line))
            TakeOptions(directory, p.options.GetMatch(line, 1));
        else if (p.allowOverride.Matches(line))
            directory.AllowOverride = p.allowOverride.GetMatch(line, 1).Lower().Contains("all");
        else
            directory.others.push_back(WithoutLeadingBlanks(line));
    }
}

bool WriteVirtualHosts(const VirtualHostFile& file) {
    wxString text;
    if (file.path.empty() || !ReadTemplate(file.path, text))
        return false;
    wxString out = LinesOutsideBlocks(text);
    for (const VirtualHostRecord& host : file.hosts)
        WriteVirtualHostBlock(host, out);
    return TextFiles::WriteAtomically(file.path, out);
}

void WriteVirtualHostBlock(const VirtualHostRecord& host, wxString& out) {
    out << "<VirtualHost " << host.address << ">\n";
    out << "#KOVIX Generate Virtual Host\n";
    WriteQuotedValue("DocumentRoot", host.DocumentRoot, out);
    WriteQuotedValue("ServerName", host.ServerName, out);
    WriteQuotedValue("ServerAlias", host.ServerAlias, out);
    for (const wxString& line : host.others)
        out << '\t' << line << '\n';
    for (const AliasRecord& alias : host.aliases)
        out << "\tAlias \"" << alias.name << "\" \"" << alias.folder << "\"\n";
    for (const DirectoryRecord& directory : host.directories)
        WriteDirectoryBlock(directory, out);
    out << "</VirtualHost>\n";
}

void WriteDirectoryBlock(const DirectoryRecord& directory, wxString& out) {
    out << "\t<Directory \"" << directory.path << "\">\n";
    out << (directory.AllowOverride ? "\t\tAllowOverride All\n" : "\t\tAllowOverride None\n");
    const std::pair<bool, const char*> options[] = {{directory.FollowSymLinks, "FollowSymLinks "},
                                                    {directory.Includes, "Includes "},
                                                    {directory.Indexes, "Indexes "},
                                                    {directory.MultiViews, "MultiViews "}};
    wxString optionWords;
    for (const auto& [set, word] : options)
        if (set)
            optionWords += word;
    if (!optionWords.empty())
        out << "\t\tOptions " << optionWords << '\n';
    for (const wxString& line : directory.others)
        out << "\t\t" << line << '\n';
    out << "\t</Directory>\n";
}
