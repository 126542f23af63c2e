#include "cli/CtlCommand.h"

#include "core/FileErrors.h"
#include "core/TextFiles.h"
#include "core/TreeLock.h"
#include "core/lang/LangTable.h"

#include <wx/filename.h>

#include <algorithm>
#include <optional>
#include <ostream>

namespace {

bool StartsWithWords(const std::vector<wxString>& arguments, const std::vector<wxString>& words) {
    return arguments.size() >= words.size() &&
           std::equal(words.begin(), words.end(), arguments.begin());
}

// The command whose words are the longest prefix of the arguments.
const CtlCommandSpec* FindCommand(const std::vector<wxString>& arguments) {
    const CtlCommandSpec* best = nullptr;
    for (const CtlCommandSpec& command : CtlCommandTable())
        if (StartsWithWords(arguments, command.words) &&
            (!best || command.words.size() > best->words.size()))
            best = &command;
    return best;
}

void PrintUsage(std::ostream& err) {
    std::vector<std::string> lines;
    for (const CtlCommandSpec& command : CtlCommandTable()) {
        std::string line = "  ";
        for (const wxString& word : command.words)
            line += Utf8(word) + " ";
        lines.push_back(line + command.usage);
    }
    std::sort(lines.begin(), lines.end());
    err << "usage: kovixctl [--root DIR] COMMAND [ARGS] [--json]\ncommands:\n";
    for (const std::string& line : lines)
        err << line << "\n";
}

struct Invocation {
    wxString root;
    bool json = false;
    std::vector<wxString> words;
};

// Options that belong to one command and reach it among its arguments.
bool IsCommandOption(const wxString& argument) {
    return argument == "--follow" || argument == "--lines" || argument == "--into";
}

Invocation ParseOptions(const std::vector<wxString>& arguments) {
    Invocation invocation;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const wxString& argument = arguments[i];
        if (argument == "--json")
            invocation.json = true;
        else if (argument == "--root") {
            if (i + 1 == arguments.size())
                throw CtlUsageError("--root needs a folder");
            invocation.root = arguments[++i];
        } else if (argument.StartsWith("--") && !IsCommandOption(argument))
            throw CtlUsageError("unknown option " + Utf8(argument));
        else
            invocation.words.push_back(argument);
    }
    if (invocation.words.empty())
        throw CtlUsageError("no command");
    return invocation;
}

// Absolute, so that the generated files never hold a path relative to the caller's folder.
wxString ProgramFolder(const Invocation& invocation) {
    if (invocation.root.empty())
        return InstallPaths::ExecutableFolder();
    wxFileName folder = wxFileName::DirName(invocation.root);
    folder.MakeAbsolute();
    return folder.GetPath();
}

int Execute(const Invocation& invocation, std::ostream& out, std::ostream& err) {
    const CtlCommandSpec* command = FindCommand(invocation.words);
    if (!command)
        throw CtlUsageError("unknown command " + Utf8(invocation.words.front()));
    const wxString root = ProgramFolder(invocation);
    if (!wxDirExists(root)) {
        InitLangTable(AppSettings());
        err << Utf8(wxString::Format(GetLangText("TREE_MISSING"), root)) << "\n";
        return 1;
    }
    // Held from reading the settings to writing them back, and over a whole start or stop.
    std::optional<TreeLock> lock;
    if (command->access == CtlAccess::Changes)
        lock.emplace(root);
    CtlContext context(root, out, err);
    context.json = invocation.json;
    context.args.assign(invocation.words.begin() + command->words.size(), invocation.words.end());
    int code = 0;
    try {
        command->handler(context);
    } catch (const CtlFailure& failure) {
        err << failure.what() << "\n";
        code = 1;
    }
    if (context.HasChangedSettings() && !context.settings.Save(context.paths.SettingsFile())) {
        err << Utf8(FileErrors::CannotWrite(context.paths.SettingsFile())) << "\n";
        code = 1;
    }
    return code;
}

} // namespace

CtlContext::CtlContext(const wxString& programFolder, std::ostream& out, std::ostream& err)
    : paths(programFolder, settings), out(out), err(err) {
    settings.Load(paths.SettingsFile());
    loadedSettings = settings;
    InitLangTable(settings);
}

void CtlContext::Print(const wxString& line) {
    out << Utf8(line) << "\n";
}

void CtlContext::Flush() {
    out.flush();
}

wxString CtlContext::TakeOption(const wxString& name) {
    const auto option = std::find(args.begin(), args.end(), name);
    if (option == args.end())
        return wxString();
    if (option + 1 == args.end())
        throw CtlUsageError(Utf8(name) + " needs a value");
    const wxString value = *(option + 1);
    args.erase(option, option + 2);
    return value;
}

bool CtlContext::TakeFlag(const wxString& name) {
    const auto flag = std::find(args.begin(), args.end(), name);
    if (flag == args.end())
        return false;
    args.erase(flag);
    return true;
}

void CtlContext::PrintError(const wxString& line) {
    err << Utf8(line) << "\n";
}

void CtlContext::PrintJson(const nlohmann::json& document) {
    out << document.dump() << "\n";
}

void CtlContext::PrintTable(const std::vector<std::vector<wxString>>& rows) {
    std::vector<size_t> widths;
    for (const auto& row : rows)
        for (size_t column = 0; column < row.size(); ++column) {
            widths.resize(std::max(widths.size(), column + 1));
            widths[column] = std::max(widths[column], row[column].length());
        }
    for (const auto& row : rows) {
        wxString line;
        for (size_t column = 0; column < row.size(); ++column) {
            line += row[column];
            if (column + 1 < row.size())
                line += wxString(' ', widths[column] - row[column].length() + 2);
        }
        Print(line);
    }
}

void CtlContext::ExpectTree() const {
    if (!wxDirExists(paths.ApacheFolder()) && !wxDirExists(paths.MysqlFolder()))
        throw CtlFailure(wxString::Format(GetLangText("TREE_NOT_KOVIX"), paths.ProgramFolder()));
}

const wxString& CtlContext::Arg(size_t index) const {
    if (index >= args.size())
        throw CtlUsageError("missing argument");
    return args[index];
}

void CtlContext::ExpectArgCount(size_t minimum, size_t maximum) const {
    if (args.size() < minimum || args.size() > maximum)
        throw CtlUsageError("wrong number of arguments");
}

int RunKovixCtl(const std::vector<wxString>& arguments, std::ostream& out, std::ostream& err) {
    try {
        return Execute(ParseOptions(arguments), out, err);
    } catch (const CtlUsageError& error) {
        err << "kovixctl: " << error.what() << "\n";
        PrintUsage(err);
        return 2;
    }
}
