#include "gui/GuiTesting.h"

#include <wx/choice.h>
#include <wx/combobox.h>
#include <wx/evtloop.h>
#include <wx/stopwatch.h>
#include <wx/textctrl.h>

bool WaitFor(const std::function<bool()>& condition, int timeoutMs) {
    wxStopWatch watch;
    while (!condition()) {
        if (watch.Time() > timeoutMs)
            return condition();
        // Yield(true) does nothing inside another yield: a wait run from the events of another
        // wait (two WhenModal actions, say) would see nothing arrive and only time out.
        if (const wxEventLoopBase* loop = wxEventLoopBase::GetActive();
            loop && loop->IsYielding()) {
            ADD_FAILURE() << "WaitFor inside another wait's events: nothing can arrive there";
            return false;
        }
        wxTheApp->Yield(true);
        wxMilliSleep(5);
    }
    return true;
}

void CloseWindow(wxWindow* window) {
    window->Destroy();
    WaitFor([window] {
        wxTheApp->ProcessIdle();
        return wxTopLevelWindows.Find(window) == nullptr;
    });
}

namespace {
void Send(wxWindow* source, wxCommandEvent& event) {
    event.SetEventObject(source);
    source->GetEventHandler()->ProcessEvent(event);
}
} // namespace

void ClickButton(wxWindow* top, int id) {
    wxCommandEvent click(wxEVT_BUTTON, id);
    Send(Control(top, id), click);
}

void ChooseMenu(wxWindow* window, int id) {
    wxCommandEvent choice(wxEVT_MENU, id);
    Send(window, choice);
}

void Choose(wxWindow* box, int row, wxEventType type) {
    auto* items = dynamic_cast<wxItemContainer*>(box);
    items->SetSelection(row);
    if (type == wxEVT_NULL)
        type = wxDynamicCast(box, wxListBox)    ? wxEVT_LISTBOX
               : wxDynamicCast(box, wxComboBox) ? wxEVT_COMBOBOX
                                                : wxEVT_CHOICE;
    wxCommandEvent event(type, box->GetId());
    event.SetInt(row);
    if (row != wxNOT_FOUND)
        event.SetString(items->GetString(row));
    Send(box, event);
}

void Choose(wxWindow* box, const wxString& text) {
    Choose(box, dynamic_cast<wxItemContainer*>(box)->FindString(text, true));
}

void Type(wxWindow* top, int id, const wxString& text) {
    Control<wxTextCtrl>(top, id)->SetValue(text);
}

std::vector<wxString> Rows(const wxListBox* list) {
    std::vector<wxString> rows;
    for (unsigned i = 0; i < list->GetCount(); ++i)
        rows.push_back(list->GetString(i));
    return rows;
}
