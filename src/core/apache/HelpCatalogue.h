#pragma once

#include <wx/string.h>

#include <map>
#include <vector>

// The built-in help of the 67 Apache modules and 177 PHP extensions the configuration dialogs
// know: a description and a documentation link per name. One immutable table, built on first use
// and shared by every dialog, worker and command, so it is never copied: any thread may look up.
// Lookups are exact and case-sensitive and never add a name; an unknown name gives
// "No Description Available" and an empty link.
class HelpCatalogue {
public:
    static const HelpCatalogue& Get();
    HelpCatalogue(const HelpCatalogue&) = delete;
    HelpCatalogue& operator=(const HelpCatalogue&) = delete;

    wxString ModuleDescription(const wxString& name) const;
    wxString ModuleLink(const wxString& name) const;
    wxString ExtensionDescription(const wxString& name) const;
    wxString ExtensionLink(const wxString& name) const;

    // The names in catalogue order.
    static std::vector<wxString> ModuleNames();
    static std::vector<wxString> ExtensionNames();

private:
    HelpCatalogue();

    std::map<wxString, wxString> moduleDescriptions;
    std::map<wxString, wxString> moduleLinks;
    std::map<wxString, wxString> extensionDescriptions;
    std::map<wxString, wxString> extensionLinks;
};
