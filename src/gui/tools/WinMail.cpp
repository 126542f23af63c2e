#include "gui/tools/WinMail.h"

#include "core/InstallPaths.h"
#include "core/lang/LangTable.h"
#include "core/mail/MailMessage.h"
#include "gui/tools/ActionButtons.h"

#include <wx/button.h>
#include <wx/listctrl.h>
#include <wx/msgdlg.h>
#include <wx/sizer.h>
#include <wx/textctrl.h>
#include <wx/utils.h>

namespace {

const int Gap = 6;

} // namespace

WinMail::WinMail(wxWindow* parent, const InstallPaths& paths)
    : wxDialog(parent, wxID_ANY, GetLangText("MAIL_TITLE"), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER, "WinMail"),
      store(MailStore::FolderOf(paths)) {
    BuildControls();
    Reload();
}

void WinMail::BuildControls() {
    list = new wxListCtrl(this, wxID_ANY, wxDefaultPosition, wxSize(720, 200),
                          wxLC_REPORT | wxLC_SINGLE_SEL, wxDefaultValidator, "list_Mail");
    const std::pair<const char*, int> columns[] = {
        {"MAIL_DATE", 190}, {"MAIL_FROM", 160}, {"MAIL_TO", 160}, {"MAIL_SUBJECT", 200}};
    for (const auto& [key, width] : columns)
        list->AppendColumn(GetLangText(key), wxLIST_FORMAT_LEFT, width);
    text = new wxTextCtrl(this, wxID_ANY, "", wxDefaultPosition, wxSize(720, 260),
                          wxTE_MULTILINE | wxTE_READONLY | wxTE_DONTWRAP, wxDefaultValidator,
                          "text_Message");
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    AddActionButtons(this, row, Gap,
                     {{"MAIL_OPEN", &WinMail::OnOpen},
                      {"MAIL_DELETE", &WinMail::OnDelete},
                      {"MAIL_DELETE_ALL", &WinMail::OnDeleteAll}});
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(list, 1, wxEXPAND | wxALL, Gap);
    column->Add(text, 2, wxEXPAND | wxLEFT | wxRIGHT, Gap);
    column->Add(row, 0, wxALL, Gap);
    SetSizerAndFit(column);
    list->Bind(wxEVT_LIST_ITEM_SELECTED, &WinMail::OnSelected, this);
}

void WinMail::Reload() {
    const long selected = SelectedRow();
    const wxString keep = selected >= 0 ? messages[static_cast<size_t>(selected)].id : wxString();
    messages = store.List();
    list->DeleteAllItems();
    long reselect = messages.empty() ? -1 : 0;
    for (const MailSummary& message : messages) {
        const long row = list->InsertItem(list->GetItemCount(), message.date);
        list->SetItem(row, 1, message.from);
        list->SetItem(row, 2, message.to);
        list->SetItem(row, 3, message.subject);
        if (message.id == keep)
            reselect = row;
    }
    Select(reselect);
}

void WinMail::Select(long row) {
    if (row >= 0)
        list->SetItemState(row, wxLIST_STATE_SELECTED | wxLIST_STATE_FOCUSED,
                           wxLIST_STATE_SELECTED | wxLIST_STATE_FOCUSED);
    ShowSelected();
}

long WinMail::SelectedRow() const {
    return list->GetNextItem(-1, wxLIST_NEXT_ALL, wxLIST_STATE_SELECTED);
}

void WinMail::ShowSelected() {
    const long row = SelectedRow();
    std::string raw;
    if (row < 0 || !store.Read(messages[static_cast<size_t>(row)].id, raw)) {
        text->Clear();
        return;
    }
    const MailMessage message = MailMessage::Parse(raw);
    wxString shown;
    for (const auto& [name, value] : message.Headers())
        shown += name + ": " + value + "\n";
    text->ChangeValue(shown + "\n" + message.Text());
    text->ShowPosition(0);
}

wxString WinMail::ShownText() const {
    return text->GetValue();
}

void WinMail::OnSelected(wxListEvent&) {
    ShowSelected();
}

void WinMail::OnOpen(wxCommandEvent&) {
    const long row = SelectedRow();
    if (row >= 0)
        wxLaunchDefaultApplication(store.PathOf(messages[static_cast<size_t>(row)].id));
}

void WinMail::OnDelete(wxCommandEvent&) {
    const long row = SelectedRow();
    if (row >= 0)
        store.Remove(messages[static_cast<size_t>(row)].id);
    Reload();
}

void WinMail::OnDeleteAll(wxCommandEvent&) {
    if (!messages.empty() && wxMessageBox(GetLangText("MAIL_DELETE_ALL_SURE"), "Kovix",
                                          wxYES_NO | wxNO_DEFAULT | wxICON_QUESTION, this) == wxYES)
        store.Clear();
    Reload();
}
