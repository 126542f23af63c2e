#include "core/apache/HelpCatalogue.h"

namespace {

struct HelpCatalogueEntry {
    const wchar_t* name;
    const wchar_t* description;
};

#include "core/apache/HelpCatalogueData.inc"

const wxString noDescription = "No Description Available";

// The tree runs Apache 2.4, whose manual names the process models' pages without "mod_mpm_".
wxString ModuleLinkOf(const wxString& name) {
    wxString stem = name;
    stem.EndsWith("_module", &stem);
    const wxString page = stem.StartsWith("mpm_", &stem) ? stem : "mod_" + stem;
    return "http://httpd.apache.org/docs/2.4/mod/" + page + ".html";
}

// The manual files a few extensions under another name than the one php.ini uses.
wxString ExtensionLinkOf(const wxString& name) {
    static const std::map<wxString, wxString> bookNames = {
        {"bz2", "bzip2"}, {"interbase", "ibase"}, {"gd2", "image"}, {"sybase_ct", "sybase"}};
    auto renamed = bookNames.find(name);
    const wxString& book = renamed == bookNames.end() ? name : renamed->second;
    return "http://www.php.net/manual/en/book." + book + ".php";
}

wxString Find(const std::map<wxString, wxString>& map, const wxString& name,
              const wxString& fallback) {
    auto found = map.find(name);
    return found == map.end() ? fallback : found->second;
}

template <size_t N> std::vector<wxString> NamesOf(const HelpCatalogueEntry (&entries)[N]) {
    std::vector<wxString> names;
    names.reserve(N);
    for (const HelpCatalogueEntry& entry : entries)
        names.emplace_back(entry.name);
    return names;
}

} // namespace

const HelpCatalogue& HelpCatalogue::Get() {
    static const HelpCatalogue catalogue; // C++ makes its construction thread-safe
    return catalogue;
}

HelpCatalogue::HelpCatalogue() {
    for (const HelpCatalogueEntry& entry : moduleEntries) {
        moduleDescriptions.emplace(entry.name, entry.description);
        moduleLinks.emplace(entry.name, ModuleLinkOf(entry.name));
    }
    for (const HelpCatalogueEntry& entry : extensionEntries) {
        extensionDescriptions.emplace(entry.name, entry.description);
        extensionLinks.emplace(entry.name, ExtensionLinkOf(entry.name));
    }
}

wxString HelpCatalogue::ModuleDescription(const wxString& name) const {
    return Find(moduleDescriptions, name, noDescription);
}

wxString HelpCatalogue::ModuleLink(const wxString& name) const {
    return Find(moduleLinks, name, wxString());
}

wxString HelpCatalogue::ExtensionDescription(const wxString& name) const {
    return Find(extensionDescriptions, name, noDescription);
}

wxString HelpCatalogue::ExtensionLink(const wxString& name) const {
    return Find(extensionLinks, name, wxString());
}

std::vector<wxString> HelpCatalogue::ModuleNames() {
    return NamesOf(moduleEntries);
}

std::vector<wxString> HelpCatalogue::ExtensionNames() {
    return NamesOf(extensionEntries);
}
