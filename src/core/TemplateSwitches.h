#pragma once

#include "core/InstallPaths.h"

#include <wx/string.h>

#include <vector>

// Turns PHP extensions ("extension=" lines of the selected version's php_source.ini) and Apache
// modules ("LoadModule" lines of httpd_source.conf) on and off by commenting lines out or in.
// Lines are never added or removed; a rewrite leaves every line it does not switch byte for byte
// as it was, line ending included, and replaces the template atomically (TextDocument).
namespace TemplateSwitches {

// The key under which the module line of the selected PHP version ({PHPMODULENAME}) is listed.
extern const char* const PHP_MODULE_LABEL;

// Extension lines: ";extension=FILE" (disabled) or "extension=FILE" (enabled) at the line start.
std::vector<wxString> ListExtensionLines(const InstallPaths& paths);
// FILE of an extension line; "" for any other line.
wxString ExtensionFileOf(const wxString& line);
// "php_gd.so" -> "gd" (the platform's extension pattern; "php_gd.dll" on Windows); "" when the
// file does not fit it.
wxString ExtensionNameOf(const wxString& file);
bool IsExtensionLineEnabled(const wxString& line);
wxString MakeExtensionLine(const wxString& line, bool enabled);
// Each extension line of the template takes the first entry of lines with the same file.
bool WriteExtensionLines(const InstallPaths& paths, const std::vector<wxString>& lines);

// Module lines: "#LoadModule ..." (disabled) or "LoadModule ..." (enabled) at the line start.
std::vector<wxString> ListModuleLines(const InstallPaths& paths);
// The module identifier of a module line (PHP_MODULE_LABEL for {PHPMODULENAME}); "" otherwise.
wxString ModuleKeyOf(const wxString& line);
bool IsModuleLineEnabled(const wxString& line);
wxString MakeModuleLine(const wxString& line, bool enabled);
// Each module line of the template takes the first entry of lines with the same key.
bool WriteModuleLines(const InstallPaths& paths, const std::vector<wxString>& lines);

} // namespace TemplateSwitches
