#pragma once

#include "core/AppSettings.h"
#include "core/InstallPaths.h"

#include <nlohmann/json.hpp>
#include <wx/string.h>

#include <iosfwd>
#include <stdexcept>
#include <vector>

// Thrown by a command for a usage error: exit code 2, the usage text, nothing written.
struct CtlUsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Thrown by a command that is refused or fails: exit code 1, the message on standard error.
struct CtlFailure : std::runtime_error {
    explicit CtlFailure(const wxString& message) : std::runtime_error(message.utf8_string()) {}
};

// One kovixctl invocation: the tree, its settings and the command's own arguments.
class CtlContext {
public:
    CtlContext(const wxString& programFolder, std::ostream& out, std::ostream& err);

    AppSettings settings;
    InstallPaths paths;
    std::vector<wxString> args; // what follows the command words
    bool json = false;

    // Marks the settings as changed: they are written before the program exits.
    void SettingsChanged() { settingsChanged = true; }
    // True when a command said it changed the settings and they differ from what was loaded.
    bool HasChangedSettings() const {
        return settingsChanged && settings.Entries() != loadedSettings.Entries();
    }

    void Print(const wxString& line);
    void Flush();
    void PrintError(const wxString& line);
    void PrintJson(const nlohmann::json& document);
    // Rows printed with each column padded to its widest cell.
    void PrintTable(const std::vector<std::vector<wxString>>& rows);

    // Refuses (exit 1) a folder that holds neither an Apache nor a MySQL folder: no Kovix tree.
    void ExpectTree() const;
    // The argument at index, or a usage error when it is missing.
    const wxString& Arg(size_t index) const;
    void ExpectArgCount(size_t minimum, size_t maximum) const;
    // Removes "--name VALUE" from the arguments and returns VALUE ("" when absent).
    wxString TakeOption(const wxString& name);
    // Removes "--name" from the arguments; true when it was there.
    bool TakeFlag(const wxString& name);

private:
    std::ostream& out;
    std::ostream& err;
    bool settingsChanged = false;
    AppSettings loadedSettings;
};

// Exit 1 with the failures a core operation answered, one a line; nothing when there are none.
inline void FailUnlessEmpty(const wxString& failures) {
    if (!failures.empty())
        throw CtlFailure(wxString(failures).Trim());
}

using CtlHandler = void (*)(CtlContext&);

// Whether a command only reads the tree, or may write to it or start and stop its servers.
enum class CtlAccess { Reads, Changes };

// One command: the words that name it (e.g. {"php", "ext"}), the usage shown after them.
struct CtlCommandSpec {
    std::vector<wxString> words;
    const char* usage;
    CtlHandler handler;
    CtlAccess access;
};

// Every command kovixctl knows (CtlCommandTable.cpp).
const std::vector<CtlCommandSpec>& CtlCommandTable();

// Runs kovixctl with its arguments (without the program name); returns the exit code.
int RunKovixCtl(const std::vector<wxString>& arguments, std::ostream& out, std::ostream& err);

inline std::string Utf8(const wxString& text) {
    return text.utf8_string();
}
inline wxString FromUtf8(const std::string& text) {
    return wxString::FromUTF8(text);
}
