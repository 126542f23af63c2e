#pragma once

// Helpers of the window tests: waiting on the event loop, finding controls, and the user's
// gestures sent as the controls themselves send them.

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/dialog.h>
#include <wx/listbox.h>
#include <wx/modalhook.h>
#include <wx/msgdlg.h>
#include <wx/testing.h>
#include <wx/toplevel.h>

#include <functional>
#include <vector>

// Runs the event loop until condition holds or timeoutMs passes; returns the condition's last
// value. Window tests wait with this, never with blind sleeps.
bool WaitFor(const std::function<bool()>& condition, int timeoutMs = 10000);
// Destroys a top-level window and runs the idle work that really deletes it.
void CloseWindow(wxWindow* window);

template <class T = wxWindow> T* Control(wxWindow* top, int id) {
    return wxDynamicCast(wxWindow::FindWindowById(id, top), T);
}
template <class T> T* Named(wxWindow* top, const wxString& name) {
    return wxDynamicCast(wxWindow::FindWindowByName(name, top), T);
}
inline wxString Label(wxWindow* top, int id) {
    return Control(top, id)->GetLabel();
}
inline bool IsEnabled(wxWindow* top, int id) {
    return Control(top, id)->IsEnabled();
}

// The shown top-level window of class T (a modal dialog opened by the code under test).
template <class T> T* OpenDialog() {
    for (wxWindow* window : wxTopLevelWindows)
        if (auto* found = dynamic_cast<T*>(window); found && found->IsShown())
            return found;
    return nullptr;
}

// Runs action from the event loop of the next modal dialog (queued now, run once it spins).
inline void WhenModal(std::function<void()> action) {
    wxTheApp->CallAfter(std::move(action));
}

void ClickButton(wxWindow* top, int id);
// Sends a menu command with this id to window, as a pop-up menu of it would.
void ChooseMenu(wxWindow* window, int id);
// Selects row of a list, choice or combo box and sends the event of that gesture; type
// wxEVT_LISTBOX_DCLICK makes it a double click on a list box row.
void Choose(wxWindow* box, int row, wxEventType type = wxEVT_NULL);
// Chooses the row showing text.
void Choose(wxWindow* box, const wxString& text);
void Type(wxWindow* top, int id, const wxString& text);
std::vector<wxString> Rows(const wxListBox* list);

// Expects a message box, remembers its message and caption, and answers it with answer.
class ExpectMessage : public wxExpectModalBase<wxMessageDialog, ExpectMessage> {
public:
    ExpectMessage(wxString& message, wxString& caption, int answer = wxID_OK)
        : message(message), caption(caption), answer(answer) {}

protected:
    int OnInvoked(wxMessageDialog* dialog) const override {
        message = dialog->GetMessage();
        caption = dialog->GetTitle();
        return answer;
    }

private:
    wxString& message;
    wxString& caption;
    int answer;
};

// While it lives, fails the test at file:line on any modal dialog and answers it Cancel at once.
class NoDialogHook : public wxModalDialogHook {
public:
    NoDialogHook(const char* file, int line) : file(file), line(line) { Register(); }
    ~NoDialogHook() override { Unregister(); }

protected:
    int Enter(wxDialog* dialog) override {
        ADD_FAILURE_AT(file, line) << "unexpected dialog \"" << dialog->GetTitle() << "\"";
        return wxID_CANCEL;
    }
    void Exit(wxDialog*) override {}

private:
    const char* file;
    int line;
};

#define EXPECT_NO_DIALOG(code)                                                                     \
    {                                                                                              \
        NoDialogHook noDialogHook(__FILE__, __LINE__);                                             \
        code;                                                                                      \
    }
