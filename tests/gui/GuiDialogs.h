#pragma once

#include <wx/app.h>
#include <wx/event.h>
#include <wx/msgdlg.h>
#include <wx/testing.h>
#include <wx/window.h>

#include <functional>

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

// Sends a click of the button with this id inside top, as the button itself would.
inline void ClickButton(wxWindow* top, int id) {
    wxWindow* button = wxWindow::FindWindowById(id, top);
    wxCommandEvent click(wxEVT_BUTTON, id);
    click.SetEventObject(button);
    button->GetEventHandler()->ProcessEvent(click);
}

// Sends a menu command with this id to window, as a pop-up menu of it would.
inline void ChooseMenu(wxWindow* window, int id) {
    wxCommandEvent choice(wxEVT_MENU, id);
    choice.SetEventObject(window);
    window->GetEventHandler()->ProcessEvent(choice);
}

// Runs action from the event loop of the next modal dialog (queued now, run once it spins).
inline void WhenModal(std::function<void()> action) {
    wxTheApp->CallAfter(std::move(action));
}

// Runs code and fails the test if it opens any modal dialog (which then returns at once).
#define EXPECT_NO_DIALOG(code)                                                                     \
    {                                                                                              \
        wxTestingModalHook noDialogHook(__FILE__, __LINE__, __WXFUNCTION__);                       \
        code;                                                                                      \
    }
