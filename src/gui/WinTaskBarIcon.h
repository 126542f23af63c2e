#pragma once

#include <wx/taskbar.h>

class WinKovix;

// The panel's notification-area icon: a double-click shows the main window, a right-click opens
// a menu (built afresh each time) with the servers' state, start and stop, the web tools and exit.
// Every entry calls the main window's own command.
class WinTaskBarIcon : public wxTaskBarIcon {
public:
    enum {
        ID_SHOW_HIDE = 10002,
        ID_START = 10003,
        ID_STOP = 10004,
        ID_WWW_SITE = 10006,
        ID_WWW_FOLDER = 10007,
        ID_PHPMYADMIN = 10008,
        ID_PHPINFO = 10009,
        ID_SQLITE = 10010,
        ID_EXIT = 10011,
        ID_STATUS_LINE = 10001 // the two state lines: no handler
    };

    explicit WinTaskBarIcon(WinKovix* window);

    // Public so that the menu can be built and checked without a right-click.
    wxMenu* CreatePopupMenu() override;

private:
    void OnShowHide(wxCommandEvent& event);
    void OnStart(wxCommandEvent& event);
    void OnStop(wxCommandEvent& event);
    void OnWwwSite(wxCommandEvent& event);
    void OnWwwFolder(wxCommandEvent& event);
    void OnPhpMyAdmin(wxCommandEvent& event);
    void OnPhpInfo(wxCommandEvent& event);
    void OnSqlite(wxCommandEvent& event);
    void OnExit(wxCommandEvent& event);
    void OnDoubleClick(wxTaskBarIconEvent& event);

    WinKovix* window;

    wxDECLARE_EVENT_TABLE();
};
