// kovixctl commands of the templates: generate, PHP versions, extension and module switches.
// When no PHP version is stored, these commands work on the first installed one without storing it
// (the window makes and stores that choice at its start-up; kovixctl never does so on its own).
#include "cli/CtlCommand.h"
#include "core/ConfigGenerator.h"
#include "core/FileErrors.h"
#include "core/PhpVersions.h"
#include "core/TemplateSwitches.h"
#include "core/lang/LangTable.h"

#include <algorithm>

namespace {

using namespace TemplateSwitches;
using Json = nlohmann::ordered_json;

// Fields in the documented order.
void PrintJson(CtlContext& context, const Json& document) {
    context.Print(FromUtf8(document.dump()));
}

// What the two switch commands differ in: which lines, how a name selects one, how it is made.
struct SwitchFacility {
    const char* what;
    const char* noMatchKey; // the refusal of a name that matches no line
    std::vector<wxString> (*list)(const InstallPaths&);
    bool (*selects)(const wxString& line, const wxString& name);
    wxString (*make)(const wxString& line, bool enabled);
    bool (*write)(const InstallPaths&, const std::vector<wxString>&);
    wxString (*source)(const InstallPaths&);
};

bool ExtensionSelected(const wxString& line, const wxString& name) {
    const wxString file = ExtensionFileOf(line);
    return !file.empty() && (file == name || ExtensionNameOf(file) == name);
}

bool ModuleSelected(const wxString& line, const wxString& key) {
    return !key.empty() && ModuleKeyOf(line) == key;
}

const SwitchFacility extensions{"extension",
                                "CTL_NO_EXTENSION_LINE",
                                ListExtensionLines,
                                ExtensionSelected,
                                MakeExtensionLine,
                                WriteExtensionLines,
                                [](const InstallPaths& paths) { return paths.PhpSourceConfig(); }};
const SwitchFacility modules{"module",
                             "CTL_NO_MODULE_LINE",
                             ListModuleLines,
                             ModuleSelected,
                             MakeModuleLine,
                             WriteModuleLines,
                             [](const InstallPaths& paths) { return paths.ApacheSourceConfig(); }};

// Every named line is switched or nothing is: an unknown name is refused before writing, and a
// template already in the asked state is not rewritten (its time stamp would restart servers).
void Switch(CtlContext& context, const SwitchFacility& facility, bool enabled) {
    if (context.args.empty())
        throw CtlUsageError("name at least one " + std::string(facility.what));
    PhpVersions::SelectFirstIfUnset(context.settings, context.paths);
    const std::vector<wxString> lines = facility.list(context.paths);
    std::vector<wxString> entries;
    bool changes = false;
    for (const wxString& name : context.args) {
        bool found = false;
        for (const wxString& line : lines)
            if (facility.selects(line, name)) {
                entries.push_back(facility.make(line, enabled));
                changes = changes || entries.back() != line;
                found = true;
            }
        if (!found)
            throw CtlFailure(wxString::Format(GetLangText(facility.noMatchKey), name,
                                              facility.source(context.paths)));
    }
    if (changes && !facility.write(context.paths, entries))
        throw CtlFailure(FileErrors::CannotWrite(facility.source(context.paths)));
}

} // namespace

namespace CtlCommands {

void Generate(CtlContext& context) {
    context.ExpectArgCount(0, 0);
    context.ExpectTree();
    ConfigGenerator::ApplyStartupDefaults(context.settings, context.paths);
    const ConfigGenerator generator(context.paths);
    const GenerationReport apache = generator.GenerateApache();
    if (!apache.leftOut.empty())
        context.PrintError(wxString(apache.leftOut).Trim());
    const wxString failures = apache.failures + generator.GenerateMysql();
    if (!failures.empty())
        throw CtlFailure(wxString(failures).Trim());
}

void PhpVersionList(CtlContext& context) {
    context.ExpectArgCount(0, 0);
    PhpVersions::SelectFirstIfUnset(context.settings, context.paths);
    const wxString current = context.settings.GetPhpVersion();
    const std::vector<wxString> versions = PhpVersions::List(context.paths);
    if (context.json) {
        Json names = Json::array();
        for (const wxString& version : versions)
            names.push_back(Utf8(version));
        PrintJson(context, {{"current", Utf8(current)}, {"versions", names}});
        return;
    }
    std::vector<std::vector<wxString>> rows;
    for (const wxString& version : versions)
        rows.push_back({version == current ? "*" : "", version});
    context.PrintTable(rows);
}

void PhpUse(CtlContext& context) {
    context.ExpectArgCount(1, 1);
    const std::vector<wxString> versions = PhpVersions::List(context.paths);
    if (std::find(versions.begin(), versions.end(), context.Arg(0)) == versions.end())
        throw CtlFailure(wxString::Format(GetLangText("CTL_NO_PHP_VERSION"), context.Arg(0),
                                          context.paths.ApacheFolder()));
    context.settings.SetPhpVersion(context.Arg(0));
    context.SettingsChanged();
}

void PhpExtensionList(CtlContext& context) {
    context.ExpectArgCount(0, 0);
    PhpVersions::SelectFirstIfUnset(context.settings, context.paths);
    Json document = Json::array();
    std::vector<std::vector<wxString>> rows;
    for (const wxString& line : ListExtensionLines(context.paths)) {
        const wxString file = ExtensionFileOf(line);
        const bool enabled = IsExtensionLineEnabled(line);
        document.push_back({{"line", Utf8(line)},
                            {"file", Utf8(file)},
                            {"name", Utf8(ExtensionNameOf(file))},
                            {"enabled", enabled}});
        rows.push_back({enabled ? "enabled" : "disabled", ExtensionNameOf(file), file});
    }
    if (context.json)
        PrintJson(context, document);
    else
        context.PrintTable(rows);
}

void ApacheModuleList(CtlContext& context) {
    context.ExpectArgCount(0, 0);
    Json document = Json::array();
    std::vector<std::vector<wxString>> rows;
    for (const wxString& line : ListModuleLines(context.paths)) {
        const bool enabled = IsModuleLineEnabled(line);
        document.push_back(
            {{"line", Utf8(line)}, {"key", Utf8(ModuleKeyOf(line))}, {"enabled", enabled}});
        rows.push_back({enabled ? "enabled" : "disabled", ModuleKeyOf(line)});
    }
    if (context.json)
        PrintJson(context, document);
    else
        context.PrintTable(rows);
}

void PhpExtEnable(CtlContext& context) {
    Switch(context, extensions, true);
}

void PhpExtDisable(CtlContext& context) {
    Switch(context, extensions, false);
}

void ApacheModuleEnable(CtlContext& context) {
    Switch(context, modules, true);
}

void ApacheModuleDisable(CtlContext& context) {
    Switch(context, modules, false);
}

} // namespace CtlCommands
