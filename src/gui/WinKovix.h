#pragma once

#include "core/Cleanup.h"
#include "core/InstallPaths.h"
#include "core/servers/StackController.h"
#include "gui/ChartSeries.h"

#include <wx/frame.h>
#include <wx/timer.h>

#include <cstdint>
#include <memory>

class AppSettings;
class HostNameLookupThread;
class WinStats;
class WinTaskBarIcon;
class wxBitmapButton;
class wxButton;
class wxChoice;
class wxHyperlinkCtrl;
class wxHyperlinkEvent;
class wxIconizeEvent;
class wxPanel;
class wxSpinCtrl;
class wxSpinEvent;
class wxStaticBitmap;
class wxStaticBox;
class wxStaticText;
class wxTextCtrl;
class ToolsPanel;

// The control panel: shows whether Apache and MySQL run and their processor share, starts and
// stops them, chooses the PHP version, port and online mode, opens the web tools, logs and
// templates. The servers themselves, their start rules and the restart after a change belong to
// the StackController; a 500 ms timer runs its tick and shows what it saw.
class WinKovix : public wxFrame {
public:
    enum {
        ID_PANEL = 1033,
        ID_MENU_START_APACHE = 1034,
        ID_MENU_START_MYSQL = 1035,
        ID_MENU_STOP_APACHE = 1036,
        ID_BTN_START = 1037,
        ID_MENU_STOP_MYSQL = 1037, // a menu id, told apart from the button by the event kind
        ID_BTN_STOP = 1038,
        ID_MENU_LOG_APACHE_ACCESS = 1038,
        ID_MENU_LOG_APACHE_ERROR = 1039,
        ID_MENU_LOG_APACHE_DELETE = 1040,
        ID_MENU_LOG_MYSQL_MAINFILE = 1041,
        ID_MENU_LOG_MYSQL_DELETE = 1042,
        ID_MENU_LOG_SESSION_DELETE = 1043,
        ID_MENU_LOG_ALL_DELETE = 1044,
        ID_GROUP_STATUS = 1049,
        ID_CONSOLE = 1050,
        ID_LABEL_MYSQL = 1052,
        ID_LABEL_APACHE = 1053,
        ID_STATUS_APACHE = 1054,
        ID_STATUS_MYSQL = 1055,
        ID_BITMAP_LOGO = 1057,
        ID_GROUP_TOOLS = 1058,
        ID_GROUP_SERVER = 1063,
        ID_PANEL_TOOLS = 1065,
        ID_PANEL_LINKS = 1066,
        ID_WWW_SITE = 1069,
        ID_WWW_FOLDER = 1070,
        ID_PHPMYADMIN = 1071,
        ID_PHPINFO = 1072,
        ID_SQLITE = 1073,
        ID_GROUP_CONFIGURATION = 1075,
        ID_LABEL_PHP_VERSION = 1076,
        ID_PHP_VERSION = 1078,
        ID_LINK_KOVIX = 1079,
        ID_LABEL_PORT = 1081,
        ID_PORT = 1084,
        ID_BITMAP_GEAR = 1086,
        ID_STATUS_PICTURE = 1087,
        ID_PHP_EXT = 1088,
        ID_APACHE_CONF = 1089,
        ID_STATS = 1091,
        ID_BITMAP_GLOBE = 1092,
        ID_EDIT_PHP_FILE = 1093,
        ID_EDIT_APACHE_FILE = 1094,
        ID_ONLINE_MODE = 1095,
        ID_LINK_AUTHOR = 1096,
        ID_PREFERENCES = 1097,
        ID_START_SOLO = 1102,
        ID_STOP_SOLO = 1103,
        ID_GROUP_INFORMATION = 1104,
        ID_LABEL_IP = 1105,
        ID_LABEL_UPDATE = 1108,
        ID_UPDATE_VALUE = 1109,
        ID_UPDATE_LINK = 1110,
        ID_IP_VALUE = 1111,
        ID_TOOLS_PLUS = 1112,
        ID_SITES = 1113
    };

    using RestartState = StackController::RestartState;
    static constexpr RestartState RESTART_IDLE = StackController::RESTART_IDLE;
    static constexpr RestartState RESTART_PENDING = StackController::RESTART_PENDING;
    static constexpr RestartState RESTART_STOPPED = StackController::RESTART_STOPPED;
    static constexpr RestartState RESTART_BUILDING = StackController::RESTART_BUILDING;

    static constexpr const char* VERSION = "1.1";
    static constexpr const char* PRODUCT_SITE = "http://www.kovix.org/";
    static constexpr const char* AUTHOR_SITE = "http://dev.kovix.org/";
    static constexpr int TICK_MS = 500;

    // Builds the window for the tree at programFolder; settings must outlive it.
    WinKovix(const wxString& programFolder, AppSettings& settings);
    ~WinKovix() override;

    // Commands, shared by the buttons, the pop-up menus and the tray menu.
    void StartBoth();
    void StartApacheOnly();
    void StartMysqlOnly();
    void StopBoth();
    void StopApacheOnly();
    void StopMysqlOnly();
    void OpenLocalSite();
    void OpenWwwFolder();
    void OpenPhpMyAdmin();
    void OpenPhpInfo();
    void OpenSqliteBrowser();
    void ShowOrHide();
    void ShowFromTray();

    bool IsApacheRunning() const;
    bool IsMysqlRunning() const;
    StackController& Stack() { return stack; }

    void ApplyTexts();
    void AppendConsole(const wxString& text);
    // The information panel once the network lookup has its answers: the public IP ("" when
    // none) and the latest release, which is shown as a link when newer than ours.
    void ShowInformation(const wxString& publicIp, const wxString& latestVersion, bool newer);
    // One pass of the status loop; the timer calls it every TICK_MS.
    void StatusTick();

    std::uint16_t GetRestartState() const { return stack.GetRestartState(); }
    bool IsBusy() const { return stack.IsBusy(); }
    const InstallPaths& Paths() const { return paths; }
    WinStats* GetStatsWindow() const { return stats; }
    const std::vector<ChartSeries>& CpuSeries() const { return cpuSeries; }
    WinTaskBarIcon* GetTrayIcon() const { return trayIcon.get(); }

    // The pop-up menus of the start, stop and logs buttons, built as they are shown.
    wxMenu* BuildStartMenu() const;
    wxMenu* BuildStopMenu() const;
    wxMenu* BuildLogsMenu() const;

private:
    void BuildControls();
    wxSizer* BuildStatusRow(wxPanel* panel);
    wxSizer* BuildServerGroup(wxPanel* panel);
    wxSizer* BuildStatusGroup(wxPanel* panel);
    wxSizer* BuildConfigurationGroup(wxPanel* panel);
    wxSizer* BuildToolsGroup(wxPanel* panel);
    wxSizer* BuildInformationRow(wxPanel* panel);
    void BuildStatsWindow();
    void BuildTrayIcon();
    void FillPhpVersions();
    void FillOnlineModes();
    void ApplyStoredPort();
    void StartOnLaunch();

    void ShowRefusal(const StackController::StartOutcome& outcome);
    void ShowServerState(const StackController::Status& status);
    static void SetLabelIfChanged(wxStaticText* label, const wxString& text);
    void ShowStatusPicture(bool running);
    void FeedChart(int apacheShare, int mysqlShare);
    void UpdateInformation();
    void ShowFile(const wxString& path);
    void RunLogAction(Cleanup::LogAction action);
    void PopupAndDiscard(wxMenu* menu);
    wxString MysqlErrorFile() const;
    wxString StateText(bool runs, double cpu) const;
    void OpenApacheDialog();
    void OpenPhpDialog();

    void OnTimer(wxTimerEvent& event);
    void OnStart(wxCommandEvent& event);
    void OnStop(wxCommandEvent& event);
    void OnStartMenu(wxCommandEvent& event);
    void OnStopMenu(wxCommandEvent& event);
    void OnStartApache(wxCommandEvent& event);
    void OnStartMysql(wxCommandEvent& event);
    void OnStopApache(wxCommandEvent& event);
    void OnStopMysql(wxCommandEvent& event);
    void OnLogsMenu(wxCommandEvent& event);
    void OnShowAccessLog(wxCommandEvent& event);
    void OnShowErrorLog(wxCommandEvent& event);
    void OnDeleteApacheLogs(wxCommandEvent& event);
    void OnShowMysqlLog(wxCommandEvent& event);
    void OnDeleteMysqlLogs(wxCommandEvent& event);
    void OnDeleteSessions(wxCommandEvent& event);
    void OnDeleteAll(wxCommandEvent& event);
    void OnPhpVersion(wxCommandEvent& event);
    void OnOnlineMode(wxCommandEvent& event);
    void OnPort(wxSpinEvent& event);
    void OnPhpExt(wxCommandEvent& event);
    void OnApacheConf(wxCommandEvent& event);
    void OnStats(wxCommandEvent& event);
    void OnEditPhpFile(wxCommandEvent& event);
    void OnEditApacheFile(wxCommandEvent& event);
    void OnPreferences(wxCommandEvent& event);
    void OnWwwSite(wxCommandEvent& event);
    void OnWwwFolder(wxCommandEvent& event);
    void OnPhpMyAdmin(wxCommandEvent& event);
    void OnPhpInfo(wxCommandEvent& event);
    void OnSqlite(wxCommandEvent& event);
    void OnSites(wxCommandEvent& event);
    void OnLink(wxHyperlinkEvent& event);
    void OnClose(wxCloseEvent& event);
    void OnIconize(wxIconizeEvent& event);

    AppSettings& settings;
    InstallPaths paths;
    std::uint16_t infoPending = 1;
    bool firstPhpEvent = true;
    wxTimer statusTimer;
    StackController stack;
    std::vector<ChartSeries> cpuSeries = MakeCpuSeries();
    WinStats* stats = nullptr;
    std::unique_ptr<WinTaskBarIcon> trayIcon;
    std::unique_ptr<HostNameLookupThread> lookupThread;

    wxButton* btn_Start = nullptr;
    wxButton* btn_Stop = nullptr;
    wxBitmapButton* btn_StartSolo = nullptr;
    wxBitmapButton* btn_StopSolo = nullptr;
    wxTextCtrl* TextBoxConsole = nullptr;
    wxStaticText* staticTextStApache = nullptr;
    wxStaticText* staticTextStMySQL = nullptr;
    wxStaticBitmap* statusPicture = nullptr;
    int shownPicture = -1; // the status picture on screen: -1 none yet, 0 stopped, 1 running
    wxStaticBox* groupStatus = nullptr;
    wxStaticBox* groupServer = nullptr;
    wxStaticBox* groupTools = nullptr;
    wxStaticBox* groupConfiguration = nullptr;
    wxButton* WxButtonWWW = nullptr;
    wxButton* WxButtonWWWF = nullptr;
    wxBitmapButton* WxButtonToolsPlus = nullptr;
    ToolsPanel* toolsPanel = nullptr;
    wxButton* btn_Sites = nullptr;
    wxButton* WxButtonPref = nullptr;
    wxStaticText* WxStaticText3 = nullptr;
    wxChoice* comboPHPVersion = nullptr;
    wxStaticText* WxStaticText4 = nullptr;
    wxSpinCtrl* portSpin = nullptr;
    wxButton* btn_PhpExt = nullptr;
    wxButton* btn_ApacheConf = nullptr;
    wxChoice* comboOnlineMode = nullptr;
    wxStaticText* WxStaticTextIP = nullptr;
    wxStaticText* WxStaticTextUpdate = nullptr;
    wxStaticText* WxStaticTextUpdateValue = nullptr;
    wxHyperlinkCtrl* WxStaticTextUpdateValueLink = nullptr;
    wxStaticText* WxStaticTextIPValue = nullptr;
    wxPanel* panel = nullptr;

    wxDECLARE_EVENT_TABLE();
};
