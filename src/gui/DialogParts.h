#pragma once

#include <wx/sizer.h>
#include <wx/string.h>

#include <vector>

class AppSettings;
class wxButton;
class wxListBox;
class wxStaticText;
class wxWindow;

// Building blocks of the configuration dialogs, which give every control a fixed id and name.
namespace DialogParts {

wxStaticText* Label(wxWindow* parent, int id, const wxString& text, const wxString& name);
wxButton* Button(wxWindow* parent, int id, const wxString& label, const wxString& name);
// A small square button for "+", "-" and "?".
wxButton* SmallButton(wxWindow* parent, int id, const wxString& label, const wxString& name);
// The separator line and, under it on the right, the OK and Cancel buttons ("btn_OK" and
// cancelName); leftButton, when given, goes on the left.
wxSizer* ClosingRow(wxWindow* parent, int lineId, int okId, int cancelId,
                    const wxString& cancelName, wxWindow* leftButton = nullptr);
// The dialog's layout: its body (a window or a sizer) over the closing row, gap around both,
// and the dialog sized to fit.
template <class Body>
void BodyOverClosingRow(wxWindow* dialog, Body* body, wxSizer* closingRow, int gap) {
    auto* top = new wxBoxSizer(wxVERTICAL);
    top->Add(body, 1, wxEXPAND | wxALL, gap);
    top->Add(closingRow, 0, wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM, gap);
    dialog->SetSizerAndFit(top);
}
// Lists with a remove button that a selection enables: FillList shows texts with nothing
// selected (the button disabled), SelectLast selects the last entry (the button enabled).
void FillList(wxListBox* list, const std::vector<wxString>& texts, wxWindow* removeButton);
void SelectLast(wxListBox* list, wxWindow* removeButton);
// The list's selection when it is below count, else -1.
int SelectionBelow(const wxListBox* list, size_t count);
// A description: a label in a scrolled pane (the longest texts run to a few paragraphs), drawn
// in the description font. The pane is what goes into a sizer.
wxStaticText* DescriptionPane(wxWindow* parent, int labelId, const wxString& name);
wxWindow* PaneOf(wxStaticText* description);
// Shows what could not be written, one file a line, in a message box over parent; nothing when
// failures is empty.
void ShowFailures(wxWindow* parent, const wxString& failures);
// How every window of the panel writes kovix.ini: only the settings changed here, over the file's
// current content (what kovixctl wrote meanwhile stays), under the tree's lock. A file that cannot
// be written is said over parent, once the lock is given back.
void SaveSettingsChanges(wxWindow* parent, AppSettings& settings, const wxString& settingsFile);
// Opens a documentation link in the browser; nothing for an empty link.
void OpenLink(const wxString& url);
// Shows text wrapped to the pane's width, scrolled to its start.
void ShowDescription(wxStaticText* description, const wxString& text);
// The descriptions are drawn in "MS Sans Serif" where that face exists; elsewhere the default
// face stays (a font with an unknown face would be invalid).
void UseDescriptionFont(wxWindow* control);

} // namespace DialogParts
