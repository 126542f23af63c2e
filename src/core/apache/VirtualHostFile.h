#pragma once

#include "core/TextDocument.h"

#include <wx/string.h>

#include <vector>

class InstallPaths;

// One Alias line of a virtual host: the URL path and the folder it maps to, without quotes.
struct AliasRecord {
    wxString name;
    wxString folder;

    bool operator==(const AliasRecord& other) const;
    bool operator!=(const AliasRecord& other) const { return !(*this == other); }
};

// One <Directory> block of a virtual host. Of its Options only the four words below are kept,
// of its AllowOverride only whether it says All; every other line of the block is in others.
struct DirectoryRecord {
    std::vector<wxString> others;
    wxString path;
    bool FollowSymLinks = false;
    bool Includes = false;
    bool Indexes = false;
    bool MultiViews = false;
    bool AllowOverride = false; // true: "AllowOverride All", false: "AllowOverride None"

    bool operator==(const DirectoryRecord& other) const;
    bool operator!=(const DirectoryRecord& other) const { return !(*this == other); }
};

// One <VirtualHost> block of the Apache template.
struct VirtualHostRecord {
    wxString address; // what the opening tag holds after the word VirtualHost, e.g. *:80
    wxString ServerName;
    wxString ServerAlias;
    wxString DocumentRoot;
    std::vector<AliasRecord> aliases;
    std::vector<DirectoryRecord> directories;
    std::vector<wxString> others; // every other line of the block, without leading blanks

    bool operator==(const VirtualHostRecord& other) const;
    bool operator!=(const VirtualHostRecord& other) const { return !(*this == other); }
};

// The virtual hosts of the Apache template. A plain value: the Apache dialog and its worker
// thread each hold their own copy and hand it over whole. The help texts of modules and
// extensions are not part of it: they live once, in HelpCatalogue::Get().
class VirtualHostFile {
public:
    wxString path;
    std::vector<VirtualHostRecord> hosts;
};

// The template format. The reader takes every <VirtualHost> block of the template, commented-out
// ones included; the writer copies every line outside such blocks and appends the model's blocks
// in a fixed layout after a blank line. The layout is lossy on purpose: blank and "#KOVIX" lines
// of a block, unknown option words and AllowOverride values other than All are not kept, and
// indentation is rewritten. Any thread may run these functions.

// Points file at the tree's Apache template and reads it.
bool LoadVirtualHostFile(VirtualHostFile& file, const InstallPaths& paths);
// Appends a record for every block of the template at file.path. False when the template cannot
// be read.
bool ReadVirtualHosts(VirtualHostFile& file);
// Reads the lines of one block after its opening line, up to and including its closing line.
void ReadVirtualHostBlock(VirtualHostRecord& host, TextDocument::LineReader& lines);
void ReadDirectoryBlock(DirectoryRecord& directory, TextDocument::LineReader& lines);

// Rewrites the template at file.path, replacing it atomically. False, with the template
// untouched, when the path is empty or the template cannot be read or replaced.
bool WriteVirtualHosts(const VirtualHostFile& file);
// Append one block each to out, every line ended by a line feed.
void WriteVirtualHostBlock(const VirtualHostRecord& host, wxString& out);
void WriteDirectoryBlock(const DirectoryRecord& directory, wxString& out);
