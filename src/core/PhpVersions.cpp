#include "core/PhpVersions.h"

#include "core/AppSettings.h"
#include "platform/Platform.h"

#include <wx/dir.h>
#include <wx/regex.h>
#include <wx/string.h>

#include <algorithm>

namespace PhpVersions {

namespace {

std::vector<wxString> Entries(const wxString& folder, const wxString& wildcard, int flags) {
    std::vector<wxString> names;
    wxDir dir;
    if (!wxDir::Exists(folder) || !dir.Open(folder))
        return names;
    wxString name;
    for (bool found = dir.GetFirst(&name, wildcard, flags); found; found = dir.GetNext(&name))
        names.push_back(name);
    return names;
}

} // namespace

std::vector<wxString> List(const InstallPaths& paths) {
    std::vector<wxString> versions = Entries(paths.ApacheFolder(), "php_*", wxDIR_DIRS);
    std::sort(versions.begin(), versions.end(),
              [](const wxString& a, const wxString& b) { return wxCmpNaturalGeneric(a, b) < 0; });
    return versions;
}

wxString ModuleFile(const InstallPaths& paths) {
    std::vector<wxString> files = Entries(paths.PhpFolder(), Platform::Get().PhpModuleWildcard(), wxDIR_FILES);
    if (files.empty())
        return wxString();
    return *std::min_element(files.begin(), files.end());
}

wxString ModuleNameOf(const wxString& moduleFile) {
    static const wxRegEx pattern(Platform::Get().PhpModuleNamePattern());
    if (moduleFile.empty() || !pattern.Matches(moduleFile))
        return wxString();
    return pattern.GetMatch(moduleFile, 1) + "_module";
}

wxString ModuleName(const InstallPaths& paths) {
    return ModuleNameOf(ModuleFile(paths));
}

bool SelectFirstIfUnset(AppSettings& settings, const InstallPaths& paths) {
    if (!settings.GetPhpVersion().empty())
        return true;
    const std::vector<wxString> versions = List(paths);
    if (versions.empty())
        return false;
    settings.SetPhpVersion(versions.front());
    return true;
}

} // namespace PhpVersions
