#pragma once

#include "core/php/PHPSettingRecord.h"
#include "core/php/WRegSetting.h"

#include <wx/string.h>

#include <map>

class InstallPaths;

// The 25 editable boolean php.ini directives, keyed and ordered by directive, with the values of
// a PHP template file. Reading takes, for each directive, the leading letters of its last
// "directive = value" line that starts the line; writing replaces every such line by
// "directive = value" and passes all other lines through, joined by native line ends. Neither
// adds a line nor reports to the user.
class PHPControlConfig final : public WRegSetting {
public:
    using Records = std::map<wxString, PHPSettingRecord>;

    // Fills the table and reads the values of the file at templatePath, if it exists.
    explicit PHPControlConfig(const wxString& templatePath);
    // Same, with the PHP template of the current PHP version.
    explicit PHPControlConfig(const InstallPaths& paths);

    void InitSettings() override;

    // Sets the value of every directive the file sets in letters and remembers path. False, with
    // nothing changed, when the file is missing or unreadable.
    bool ReadValues(const wxString& path);
    // Rewrites the remembered file with the current values, replacing it atomically. False, with
    // the file untouched, when it is missing or cannot be replaced.
    bool WriteValues() const;

    const Records& GetRecords() const { return records; }
    // The record of directive, or null when the table has none.
    PHPSettingRecord* Find(const wxString& directive);
    const wxString& GetPath() const { return path; }

private:
    Records records;
    wxString path;
};
