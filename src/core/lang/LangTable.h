#pragma once

#include <wx/arrstr.h>
#include <wx/string.h>

class AppSettings;

// The two-language text table ("en", "fr") every visible text is fetched from by key. Built once at
// start-up and then used from the GUI thread only: looking up an unknown key inserts it (showing
// the key itself), so a missing translation is visible instead of blank.
//
// Chooses the current language from CURRENT_LANG, else from systemLanguage (the platform's when
// omitted); English when the code is not in the table. The table keeps no reference to the
// settings: whoever changes the language stores the code it gets back.
void InitLangTable(const AppSettings& settings);
void InitLangTable(const AppSettings& settings, const wxString& systemLanguage);

const wxString& GetLangText(const wxString& key);
wxString GetCurrentLangCode();
// Display names in index order: "English", "Francais".
wxArrayString GetLangList();
// 0 selects "en", 1 "fr", any other index keeps the current one; returns the current code, for the
// caller to store (AppSettings::SetLanguage).
wxString SetLangIndex(int index);
// Index of the current language in GetLangList().
int GetLangIndex();
