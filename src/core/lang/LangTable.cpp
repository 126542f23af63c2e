#include "core/lang/LangTable.h"

#include "core/AppSettings.h"
#include "platform/Platform.h"

#include <map>

namespace {

struct LangRow {
    const char* key;
    const wchar_t* english;
    const wchar_t* french;
};

const LangRow langRows[] = {
#include "core/lang/LangTableData.inc"
};

using TextMap = std::map<wxString, wxString>;

std::map<wxString, TextMap> table;
wxString currentCode;

TextMap BuildTextMap(const wchar_t* LangRow::*column) {
    TextMap texts;
    for (const LangRow& row : langRows)
        texts[row.key] = row.*column;
    return texts;
}

} // namespace

void InitLangTable(const AppSettings& settings) {
    InitLangTable(settings, Platform::Get().DefaultUiLanguage());
}

void InitLangTable(const AppSettings& settings, const wxString& systemLanguage) {
    table["en"] = BuildTextMap(&LangRow::english);
    table["fr"] = BuildTextMap(&LangRow::french);
    wxString code = settings.GetLanguage();
    if (code.empty())
        code = systemLanguage.Left(2).Lower();
    currentCode = table.count(code) ? code : wxString("en");
}

const wxString& GetLangText(const wxString& key) {
    static const wxString empty;
    auto language = table.find(currentCode);
    if (language == table.end())
        return empty;
    auto text = language->second.find(key);
    if (text == language->second.end())
        text = language->second.emplace(key, key).first;
    return text->second;
}

wxString GetCurrentLangCode() {
    return currentCode;
}

wxArrayString GetLangList() {
    wxArrayString names;
    names.Add("English");
    names.Add("Francais");
    return names;
}

wxString SetLangIndex(int index) {
    if (index == 0)
        currentCode = "en";
    else if (index == 1)
        currentCode = "fr";
    return currentCode;
}

int GetLangIndex() {
    return currentCode == "fr" ? 1 : 0;
}
