#pragma once

#include <wx/string.h>

#include <map>

// The panel's settings: an ordered key/value store loaded from and saved to kovix.ini, with the
// typed accessors and defaults of every known key. Whoever loads it owns it: nothing reaches it
// through a global.
class AppSettings {
public:
    static constexpr const char* PHP_CURRENT_VERSION = "PHP_CURRENT_VERSION";
    static constexpr const char* APACHE_MODE = "APACHE_MODE";
    static constexpr const char* APACHE_PORT = "APACHE_PORT";
    static constexpr const char* CURRENT_LANG = "CURRENT_LANG";
    static constexpr const char* TEXT_EDITOR = "TEXT_EDITOR";
    static constexpr const char* START_SYSTRAY_MODE = "START_SYSTRAY_MODE";
    static constexpr const char* START_ON_START = "START_ON_START";
    // The missing R is how existing settings files spell it.
    static constexpr const char* AUTO_RESTAT_CONFIG_CHANGED = "AUTO_RESTAT_CONFIG_CHANGED";
    static constexpr const char* SITES_ENABLED = "SITES_ENABLED";
    static constexpr const char* HTTPS_ENABLED = "HTTPS_ENABLED";
    static constexpr const char* HTTPS_PORT = "HTTPS_PORT";

    // Reads key = "value" lines (the value ends at its second quote); a missing file leaves the
    // store as it is.
    void Load(const wxString& path);
    // Writes every entry in key order through a scratch file renamed over path.
    bool Save(const wxString& path) const;
    // Writes over the file's current content only the entries changed here since the last Load
    // or SaveChanges, so that what another program changed in the file meanwhile stays; the
    // store then holds the merged whole. Nothing changed, nothing is written (a tree the user
    // may not write is no failure then). The caller holds the tree lock.
    bool SaveChanges(const wxString& path);
    wxString ToText() const;

    wxString GetString(const wxString& key) const;
    void SetString(const wxString& key, const wxString& value);
    bool GetBool(const wxString& key, bool defaultValue) const;
    void SetBool(const wxString& key, bool value);
    bool Has(const wxString& key) const { return values.count(key) != 0; }

    wxString GetPhpVersion() const { return GetString(PHP_CURRENT_VERSION); }
    void SetPhpVersion(const wxString& version) { SetString(PHP_CURRENT_VERSION, version); }
    bool IsOnline() const;
    void SetOnline(bool online);
    int GetPort() const;
    wxString GetPortText() const { return GetString(APACHE_PORT); }
    void SetPort(int port);
    void SetPortText(const wxString& port) { SetString(APACHE_PORT, port); }
    wxString GetLanguage() const { return GetString(CURRENT_LANG); }
    void SetLanguage(const wxString& code) { SetString(CURRENT_LANG, code); }
    wxString GetTextEditor() const;
    void SetTextEditor(const wxString& editor) { SetString(TEXT_EDITOR, editor); }
    bool GetStartInTray() const { return GetBool(START_SYSTRAY_MODE, false); }
    bool GetStartServersOnStart() const { return GetBool(START_ON_START, true); }
    bool GetAutoRestart() const { return GetBool(AUTO_RESTAT_CONFIG_CHANGED, true); }
    bool GetSitesEnabled() const { return GetBool(SITES_ENABLED, true); }
    // Off until asked for: the first HTTPS start creates a certificate authority in the tree.
    bool GetHttpsEnabled() const { return GetBool(HTTPS_ENABLED, false); }
    // The stored port, else 443 where this user may listen on it, else 8443.
    int GetHttpsPort() const;

    const std::map<wxString, wxString>& Entries() const { return values; }

private:
    std::map<wxString, wxString> values;
    std::map<wxString, wxString> baseline; // the entries as of the last Load or SaveChanges
};

// Parses text as a whole decimal integer (optional sign); false for anything else.
bool ParseDecimal(const wxString& text, long& value);
