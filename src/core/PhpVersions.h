#pragma once

#include "core/InstallPaths.h"

#include <wx/string.h>

#include <vector>

class AppSettings;

// The PHP versions lying side by side in the Apache folder (folders named "php_*") and the Apache
// module of the selected one. Versions are sorted naturally (php_8.2 before php_8.10), since the
// file system's order is arbitrary here.
namespace PhpVersions {

std::vector<wxString> List(const InstallPaths& paths);
// The first file of the selected version's folder matching the platform's module wildcard
// ("*apache2_4.so" here; names sorted), or "".
wxString ModuleFile(const InstallPaths& paths);
// "phpapache2_4.so" -> "php_module"; "" when the file is empty or does not fit the pattern.
wxString ModuleNameOf(const wxString& moduleFile);
wxString ModuleName(const InstallPaths& paths);

// Makes the first installed version the current one when none is stored, in memory only; returns
// false when there is still none.
bool SelectFirstIfUnset(AppSettings& settings, const InstallPaths& paths);

} // namespace PhpVersions
