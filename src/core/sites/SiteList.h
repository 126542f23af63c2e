#pragma once

#include <wx/string.h>

#include <vector>

// One folder of www/ served at its own address, NAME.localhost.
struct Site {
    wxString name;
    wxString folder; // absolute, joined with "/"
};

// A folder of www/ that gives no usable address, with the reason in the current language.
struct SkippedFolder {
    wxString folder;
    wxString reason;

    // The sentence that says which folder is left out and why.
    wxString Message() const;
};

// The sites made from the folders directly in www/, sorted by folder name regardless of case.
// Hidden folders and the panel's own kovix/ are neither sites nor skipped; a folder whose name
// gives no valid host label, or the same name as a folder before it, is skipped with its reason.
class SiteList {
public:
    static SiteList Scan(const wxString& wwwFolder);

    // The host label of a folder name: lower-cased, every character other than a-z, 0-9 and "-"
    // made "-". Empty when that is no valid label (1 to 63 characters, no "-" at either end).
    static wxString NameOf(const wxString& folderName);

    std::vector<Site> sites;
    std::vector<SkippedFolder> skipped;
};
