#pragma once

#include <wx/panel.h>

class wxStaticText;

// The busy indicator a dialog lays over itself while a long operation runs: one line of large
// centred text at x 10 and the vertical position given at construction. Built hidden; ShowText
// shows and paints it at once (the GUI thread may stay busy afterwards); the owner hides it.
class LoadingControl : public wxPanel {
public:
    LoadingControl(wxWindow* parent, wxWindowID id, int top);

    void ShowText(const wxString& text);

private:
    wxStaticText* label = nullptr;
    int top;
};
