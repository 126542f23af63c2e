#pragma once

// Helpers of the configuration dialog tests: a real tree for the dialogs, finding their controls,
// and the user's gestures as the controls send them.

#include "app/AppSettings.h"
#include "core/InstallPaths.h"
#include "gui/GuiDialogs.h"
#include "gui/GuiWait.h"
#include "gui/WinKovix.h"
#include "lang/LangTable.h"
#include "net/HostNameLookupThread.h"
#include "support/ScopedEnv.h"
#include "support/TestTree.h"

#include <gtest/gtest.h>
#include <wx/combobox.h>
#include <wx/listbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/toplevel.h>
#include <wx/weakref.h>

template <class T> T* Control(wxWindow* top, int id) {
    return wxDynamicCast(wxWindow::FindWindowById(id, top), T);
}

template <class T> T* Named(wxWindow* top, const wxString& name) {
    return wxDynamicCast(wxWindow::FindWindowByName(name, top), T);
}

// The open top-level window of class T (a modal dialog opened by the code under test).
template <class T> T* OpenDialog() {
    for (wxWindow* window : wxTopLevelWindows)
        if (auto* found = dynamic_cast<T*>(window); found && found->IsShown())
            return found;
    return nullptr;
}

// A real tree with the settings and paths the main window hands the dialogs; English texts.
class ConfigDialogTest : public testing::Test {
protected:
    ConfigDialogTest() : tree(KOVIX_SOURCE_DIR) {
        settings.Load(tree.File("kovix.ini"));
        InitLangTable(settings, "en");
    }

    // Clicks the main window's button and, in the dialog it opens, waits for the load and clicks
    // cancelId; true when a Dialog opened. The window's network lookups go to a closed local
    // port.
    template <class Dialog> bool OpensFromMainWindow(int buttonId, int cancelId) {
        settings.SetBool(AppSettings::START_ON_START, false);
        ScopedEnv ip(HostNameLookupThread::IP_SERVICE_VARIABLE, "127.0.0.1:9");
        ScopedEnv site(HostNameLookupThread::PRODUCT_SITE_VARIABLE, "127.0.0.1:9");
        wxWeakRef<WinKovix> window = new WinKovix(tree.Root(), settings);
        bool opened = false;
        WhenModal([&] {
            Dialog* dialog = OpenDialog<Dialog>();
            opened = dialog != nullptr;
            if (!dialog)
                return;
            EXPECT_TRUE(WaitFor([&] { return !dialog->IsBusy(); }));
            ClickButton(dialog, cancelId);
        });
        ClickButton(window.get(), buttonId);
        window->Destroy();
        EXPECT_TRUE(WaitFor([&] { return !window; }));
        return opened;
    }

    TestTree tree;
    AppSettings settings;
    InstallPaths paths{tree.Root(), settings};
};

inline void SendListEvent(wxListBox* list, wxEventType type, int row) {
    list->SetSelection(row);
    wxCommandEvent event(type, list->GetId());
    event.SetEventObject(list);
    event.SetInt(row);
    list->GetEventHandler()->ProcessEvent(event);
}
inline void SelectRow(wxListBox* list, int row) {
    SendListEvent(list, wxEVT_LISTBOX, row);
}
inline void DoubleClickRow(wxListBox* list, int row) {
    SendListEvent(list, wxEVT_LISTBOX_DCLICK, row);
}

inline void ChooseValue(wxComboBox* combo, const wxString& value) {
    combo->SetStringSelection(value);
    wxCommandEvent event(wxEVT_COMBOBOX, combo->GetId());
    event.SetEventObject(combo);
    event.SetString(value);
    event.SetInt(combo->GetSelection());
    combo->GetEventHandler()->ProcessEvent(event);
}

inline void Type(wxWindow* top, int id, const wxString& text) {
    Control<wxTextCtrl>(top, id)->SetValue(text);
}

inline std::vector<wxString> Rows(const wxListBox* list) {
    std::vector<wxString> rows;
    for (unsigned i = 0; i < list->GetCount(); ++i)
        rows.push_back(list->GetString(i));
    return rows;
}

inline int RowOf(const wxListBox* list, const wxString& text) {
    return list->FindString(text, true);
}

// Text with its line breaks and runs of blanks made single blanks: a description label wraps
// its text.
inline wxString Unwrapped(wxString text) {
    text.Replace("\n", " ");
    while (text.Replace("  ", " "))
        ;
    return text.Trim().Trim(false);
}
inline wxString Shown(const wxStaticText* label) {
    return Unwrapped(label->GetLabelText());
}
