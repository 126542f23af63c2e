#pragma once

#include <wx/string.h>

#include <map>
#include <vector>

// The built-in help of the 67 Apache modules and 177 PHP extensions the configuration dialogs
// know: a description and a documentation link per name, filled in catalogue order by the
// constructor. Lookups are exact and case-sensitive and never add a name; an unknown name gives
// "No Description Available" and an empty link.
class HelpCatalogue {
public:
    HelpCatalogue();

    wxString ModuleDescription(const wxString& name) const;
    wxString ModuleLink(const wxString& name) const;
    wxString ExtensionDescription(const wxString& name) const;
    wxString ExtensionLink(const wxString& name) const;

    // The names in catalogue order.
    static std::vector<wxString> ModuleNames();
    static std::vector<wxString> ExtensionNames();

private:
    std::map<wxString, wxString> moduleDescriptions;
    std::map<wxString, wxString> moduleLinks;
    std::map<wxString, wxString> extensionDescriptions;
    std::map<wxString, wxString> extensionLinks;
};
