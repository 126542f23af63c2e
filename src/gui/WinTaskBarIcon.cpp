#include "gui/WinTaskBarIcon.h"

#include "core/lang/LangTable.h"
#include "gui/WinKovix.h"

#include <wx/menu.h>

wxBEGIN_EVENT_TABLE(WinTaskBarIcon, wxTaskBarIcon)
    EVT_MENU(WinTaskBarIcon::ID_SHOW_HIDE, WinTaskBarIcon::OnShowHide)
    EVT_MENU(WinTaskBarIcon::ID_START, WinTaskBarIcon::OnStart)
    EVT_MENU(WinTaskBarIcon::ID_STOP, WinTaskBarIcon::OnStop)
    EVT_MENU(WinTaskBarIcon::ID_EXIT, WinTaskBarIcon::OnExit)
    EVT_MENU(WinTaskBarIcon::ID_WWW_SITE, WinTaskBarIcon::OnWwwSite)
    EVT_MENU(WinTaskBarIcon::ID_WWW_FOLDER, WinTaskBarIcon::OnWwwFolder)
    EVT_MENU(WinTaskBarIcon::ID_PHPMYADMIN, WinTaskBarIcon::OnPhpMyAdmin)
    EVT_MENU(WinTaskBarIcon::ID_PHPINFO, WinTaskBarIcon::OnPhpInfo)
    EVT_MENU(WinTaskBarIcon::ID_SQLITE, WinTaskBarIcon::OnSqlite)
    EVT_TASKBAR_LEFT_DCLICK(WinTaskBarIcon::OnDoubleClick)
wxEND_EVENT_TABLE()

WinTaskBarIcon::WinTaskBarIcon(WinKovix* window) : window(window) {}

wxMenu* WinTaskBarIcon::CreatePopupMenu() {
    const bool apacheRuns = window->IsApacheRunning();
    const bool mysqlRuns = window->IsMysqlRunning();
    auto stateText = [](bool runs) { return GetLangText(runs ? "RUNNING" : "STOPPED"); };

    auto* menu = new wxMenu;
    menu->Append(ID_SHOW_HIDE, GetLangText(window->IsShown() ? "HIDE_KOVIX" : "SHOW_KOVIX"));
    menu->AppendSeparator();
    menu->Append(ID_STATUS_LINE, GetLangText("APACHE_STATUS") + stateText(apacheRuns));
    menu->Append(ID_STATUS_LINE, GetLangText("MYSQL_STATUS") + stateText(mysqlRuns));
    menu->AppendSeparator();
    menu->Append(ID_START, GetLangText("START_SERVER"))->Enable(!apacheRuns && !mysqlRuns);
    menu->Append(ID_STOP, GetLangText("STOP_SERVER"))->Enable(apacheRuns || mysqlRuns);
    menu->AppendSeparator();
    menu->Append(ID_WWW_SITE, GetLangText("WWW_SITE"));
    menu->Append(ID_WWW_FOLDER, GetLangText("WWW_FODLER"));
    menu->Append(ID_PHPMYADMIN, "PhpMyAdmin");
    menu->Append(ID_PHPINFO, "Php Info");
    menu->Append(ID_SQLITE, "SQLite");
    menu->AppendSeparator();
    menu->Append(ID_EXIT, GetLangText("EXIT"));
    return menu;
}

void WinTaskBarIcon::OnShowHide(wxCommandEvent&) {
    window->ShowOrHide();
}
void WinTaskBarIcon::OnStart(wxCommandEvent&) {
    window->StartBoth();
}
void WinTaskBarIcon::OnStop(wxCommandEvent&) {
    window->StopBoth();
}
void WinTaskBarIcon::OnWwwSite(wxCommandEvent&) {
    window->OpenLocalSite();
}
void WinTaskBarIcon::OnWwwFolder(wxCommandEvent&) {
    window->OpenWwwFolder();
}
void WinTaskBarIcon::OnPhpMyAdmin(wxCommandEvent&) {
    window->OpenPhpMyAdmin();
}
void WinTaskBarIcon::OnPhpInfo(wxCommandEvent&) {
    window->OpenPhpInfo();
}
void WinTaskBarIcon::OnSqlite(wxCommandEvent&) {
    window->OpenSqliteBrowser();
}
// A forced close still asks whether to stop the servers, and Cancel keeps the panel running.
void WinTaskBarIcon::OnExit(wxCommandEvent&) {
    window->Close(true);
}
void WinTaskBarIcon::OnDoubleClick(wxTaskBarIconEvent&) {
    window->ShowFromTray();
}
