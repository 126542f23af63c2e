#include "core/AppSettings.h"

#include "core/IniReader.h"
#include "core/TextFiles.h"
#include "platform/Platform.h"

void AppSettings::Load(const wxString& path) {
    wxString text;
    if (!TextFiles::Read(path, text))
        return;
    wxString value;
    for (const IniEntry& entry : ReadIniEntries(text))
        if (QuotedPrefix(entry.value, value))
            SetString(entry.key, value);
    baseline = values;
}

wxString AppSettings::ToText() const {
    wxString text;
    for (const auto& [key, value] : values)
        text << key << " = \"" << value << "\"\n";
    return text + "\n";
}

bool AppSettings::Save(const wxString& path) const {
    return TextFiles::WriteAtomically(path, ToText());
}

bool AppSettings::SaveChanges(const wxString& path) {
    std::map<wxString, wxString> changes;
    for (const auto& [key, value] : values) {
        const auto before = baseline.find(key);
        if (before == baseline.end() || before->second != value)
            changes[key] = value;
    }
    if (changes.empty())
        return true;
    AppSettings merged;
    merged.Load(path);
    for (const auto& [key, value] : changes)
        merged.SetString(key, value);
    if (!merged.Save(path))
        return false;
    values = merged.values;
    baseline = values;
    return true;
}

wxString AppSettings::GetString(const wxString& key) const {
    auto found = values.find(key);
    return found == values.end() ? wxString() : found->second;
}

void AppSettings::SetString(const wxString& key, const wxString& value) {
    values[key] = value;
}

bool AppSettings::GetBool(const wxString& key, bool defaultValue) const {
    const wxString value = GetString(key).Lower();
    if (value == "1" || value == "on")
        return true;
    if (value == "0" || value == "off")
        return false;
    return defaultValue;
}

void AppSettings::SetBool(const wxString& key, bool value) {
    SetString(key, value ? "1" : "0");
}

bool AppSettings::IsOnline() const {
    long mode = 0;
    return ParseDecimal(GetString(APACHE_MODE), mode) && mode == 1;
}

void AppSettings::SetOnline(bool online) {
    SetString(APACHE_MODE, wxString::Format("%i", online ? 1 : 0));
}

int AppSettings::GetPort() const {
    long port = 0;
    return ParseDecimal(GetString(APACHE_PORT), port) ? static_cast<int>(port) : 80;
}

int AppSettings::GetHttpsPort() const {
    long port = 0;
    if (ParseDecimal(GetString(HTTPS_PORT), port))
        return static_cast<int>(port);
    return Platform::Get().MayListenOn(443) ? 443 : 8443;
}

void AppSettings::SetPort(int port) {
    SetString(APACHE_PORT, wxString::Format("%i", port));
}

wxString AppSettings::GetTextEditor() const {
    const wxString editor = GetString(TEXT_EDITOR);
    return editor.empty() ? Platform::Get().DefaultTextEditor() : editor;
}

bool ParseDecimal(const wxString& text, long& value) {
    wxString digits = text;
    if (digits.StartsWith("-") || digits.StartsWith("+"))
        digits = digits.Mid(1);
    if (digits.empty() || !digits.IsNumber())
        return false;
    return text.ToLong(&value, 10);
}
