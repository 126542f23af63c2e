#include "core/FolderListing.h"

#include <wx/log.h>

std::vector<wxString> ListFolder(const wxString& folder, const wxString& wildcard, int flags) {
    wxLogNull quiet;
    std::vector<wxString> names;
    wxDir dir;
    if (!wxDir::Exists(folder) || !dir.Open(folder))
        return names;
    wxString name;
    for (bool found = dir.GetFirst(&name, wildcard, flags); found; found = dir.GetNext(&name))
        names.push_back(name);
    return names;
}
