#include "gui/LoadingControl.h"

#include <wx/evtloop.h>
#include <wx/stattext.h>

#include <algorithm>

namespace {

const wxColour kBackground(255, 243, 205);
const wxColour kText(120, 80, 0);

// GTK sizes and maps a newly shown child in its own layout pass; letting only the drawing events
// through runs that pass now, without dispatching any user input.
void RunLayoutPass() {
    if (wxEventLoopBase* loop = wxEventLoopBase::GetActive()) {
        loop->YieldFor(wxEVT_CATEGORY_UI);
        return;
    }
    wxGUIEventLoop temporary;
    temporary.YieldFor(wxEVT_CATEGORY_UI);
}

} // namespace

LoadingControl::LoadingControl(wxWindow* parent, wxWindowID id, int top)
    : wxPanel(parent, id, wxDefaultPosition, wxDefaultSize, wxBORDER_NONE, "panel"), top(top) {
    Hide();
    SetBackgroundColour(kBackground);
    label = new wxStaticText(this, wxID_ANY, wxEmptyString, wxPoint(0, 0), wxDefaultSize,
                             wxALIGN_CENTRE_HORIZONTAL | wxST_NO_AUTORESIZE, "label_loading");
    label->SetFont(wxFont(16, wxFONTFAMILY_SWISS, wxFONTSTYLE_NORMAL, wxFONTWEIGHT_NORMAL));
    label->SetForegroundColour(kText);
}

void LoadingControl::ShowText(const wxString& text) {
    const wxSize extent = label->GetTextExtent(text);
    // As wide as the owner allows with a 10 pixel margin on each side, never narrower than the
    // text.
    const int width = std::max(GetParent()->GetClientSize().x - 20, extent.x);
    const wxSize size(width, extent.y + 1);
    SetSize(10, top, size.x, size.y);
    label->SetSize(0, 0, size.x, size.y);
    label->SetLabelText(text);
    Show();
    Raise();
    Refresh();
    RunLayoutPass();
    Update();
}
