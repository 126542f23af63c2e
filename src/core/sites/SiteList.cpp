#include "core/sites/SiteList.h"

#include "core/FolderListing.h"
#include "core/lang/LangTable.h"

#include <algorithm>
#include <map>

namespace {

std::vector<wxString> SubFolders(const wxString& folder) {
    std::vector<wxString> names = ListFolder(folder, "", wxDIR_DIRS);
    std::sort(names.begin(), names.end(), [](const wxString& a, const wxString& b) {
        const int order = a.CmpNoCase(b);
        return order != 0 ? order < 0 : a < b;
    });
    return names;
}

bool IsLabelCharacter(wxUniChar c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-';
}

// A line break would end the configuration line that names the folder.
bool HasControlCharacter(const wxString& text) {
    for (wxUniChar c : text)
        if (c < 0x20 || c == 0x7f)
            return true;
    return false;
}

} // namespace

wxString SkippedFolder::Message() const {
    return wxString::Format(GetLangText("SITE_SKIPPED"), folder, reason);
}

wxString SiteList::NameOf(const wxString& folderName) {
    wxString name = folderName.Lower();
    for (auto it = name.begin(); it != name.end(); ++it)
        if (!IsLabelCharacter(*it))
            *it = '-';
    const size_t maximumLabel = 63;
    if (name.empty() || name.length() > maximumLabel || name.StartsWith("-") || name.EndsWith("-"))
        return wxString();
    return name;
}

SiteList SiteList::Scan(const wxString& wwwFolder) {
    SiteList list;
    std::map<wxString, wxString> folderOfName;
    for (const wxString& folderName : SubFolders(wwwFolder)) {
        if (folderName.StartsWith(".") || folderName == "kovix")
            continue;
        const wxString folder = wwwFolder + "/" + folderName;
        const wxString name = NameOf(folderName);
        if (HasControlCharacter(folderName)) {
            list.skipped.push_back({folder, GetLangText("SITE_CONTROL_CHARACTER")});
        } else if (name.empty()) {
            list.skipped.push_back({folder, GetLangText("SITE_NO_VALID_NAME")});
        } else if (folderOfName.count(name)) {
            list.skipped.push_back(
                {folder, wxString::Format(GetLangText("SITE_SAME_NAME"), folderOfName[name])});
        } else {
            folderOfName[name] = folderName;
            list.sites.push_back({name, folder});
        }
    }
    return list;
}
