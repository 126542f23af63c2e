#include "core/PhpVersions.h"

#include "core/AppSettings.h"
#include "core/FolderListing.h"
#include "core/SharedRegex.h"
#include "platform/Platform.h"

#include <wx/string.h>

#include <algorithm>

namespace PhpVersions {

std::vector<wxString> List(const InstallPaths& paths) {
    std::vector<wxString> versions = ListFolder(paths.ApacheFolder(), "php_*", wxDIR_DIRS);
    std::sort(versions.begin(), versions.end(),
              [](const wxString& a, const wxString& b) { return wxCmpNaturalGeneric(a, b) < 0; });
    return versions;
}

wxString ModuleFile(const InstallPaths& paths) {
    std::vector<wxString> files =
        ListFolder(paths.PhpFolder(), Platform::Get().PhpModuleWildcard(), wxDIR_FILES);
    if (files.empty())
        return wxString();
    return *std::min_element(files.begin(), files.end());
}

wxString ModuleNameOf(const wxString& moduleFile) {
    static const SharedRegex pattern(Platform::Get().PhpModuleNamePattern());
    std::vector<wxString> groups;
    if (moduleFile.empty() || !pattern.Match(moduleFile, groups))
        return wxString();
    return groups[1] + "_module";
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
