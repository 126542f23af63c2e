#include "gui/WinKovix.h"

#include "gui/tools/ToolsPanel.h"

#include "core/AppSettings.h"
#include "core/FolderListing.h"
#include "core/PhpVersions.h"
#include "core/lang/LangTable.h"
#include "core/net/HostNameLookupThread.h"
#include "core/net/VersionCompare.h"
#include "gui/DialogParts.h"
#include "gui/Images.h"
#include "gui/WinPrefs.h"
#include "gui/WinStats.h"
#include "gui/WinTaskBarIcon.h"
#include "gui/apache/WinApacheConf.h"
#include "gui/php/WinPHPExt.h"
#include "gui/sites/WinSites.h"
#include "platform/Platform.h"

#include <wx/bmpbuttn.h>
#include <wx/button.h>
#include <wx/choice.h>
#include <wx/filename.h>
#include <wx/hyperlink.h>
#include <wx/menu.h>
#include <wx/msgdlg.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/spinctrl.h>
#include <wx/statbmp.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

wxBEGIN_EVENT_TABLE(WinKovix, wxFrame)
    EVT_TIMER(wxID_ANY, WinKovix::OnTimer)
    EVT_BUTTON(WinKovix::ID_BTN_START, WinKovix::OnStart)
    EVT_BUTTON(WinKovix::ID_BTN_STOP, WinKovix::OnStop)
    EVT_BUTTON(WinKovix::ID_START_SOLO, WinKovix::OnStartMenu)
    EVT_BUTTON(WinKovix::ID_STOP_SOLO, WinKovix::OnStopMenu)
    EVT_MENU(WinKovix::ID_MENU_START_APACHE, WinKovix::OnStartApache)
    EVT_MENU(WinKovix::ID_MENU_START_MYSQL, WinKovix::OnStartMysql)
    EVT_MENU(WinKovix::ID_MENU_STOP_APACHE, WinKovix::OnStopApache)
    EVT_MENU(WinKovix::ID_MENU_STOP_MYSQL, WinKovix::OnStopMysql)
    EVT_BUTTON(WinKovix::ID_TOOLS_PLUS, WinKovix::OnLogsMenu)
    EVT_MENU(WinKovix::ID_MENU_LOG_APACHE_ACCESS, WinKovix::OnShowAccessLog)
    EVT_MENU(WinKovix::ID_MENU_LOG_APACHE_ERROR, WinKovix::OnShowErrorLog)
    EVT_MENU(WinKovix::ID_MENU_LOG_APACHE_DELETE, WinKovix::OnDeleteApacheLogs)
    EVT_MENU(WinKovix::ID_MENU_LOG_MYSQL_MAINFILE, WinKovix::OnShowMysqlLog)
    EVT_MENU(WinKovix::ID_MENU_LOG_MYSQL_DELETE, WinKovix::OnDeleteMysqlLogs)
    EVT_MENU(WinKovix::ID_MENU_LOG_SESSION_DELETE, WinKovix::OnDeleteSessions)
    EVT_MENU(WinKovix::ID_MENU_LOG_ALL_DELETE, WinKovix::OnDeleteAll)
    EVT_CHOICE(WinKovix::ID_PHP_VERSION, WinKovix::OnPhpVersion)
    EVT_CHOICE(WinKovix::ID_ONLINE_MODE, WinKovix::OnOnlineMode)
    EVT_SPINCTRL(WinKovix::ID_PORT, WinKovix::OnPort)
    EVT_BUTTON(WinKovix::ID_PHP_EXT, WinKovix::OnPhpExt)
    EVT_BUTTON(WinKovix::ID_APACHE_CONF, WinKovix::OnApacheConf)
    EVT_BUTTON(WinKovix::ID_STATS, WinKovix::OnStats)
    EVT_BUTTON(WinKovix::ID_EDIT_PHP_FILE, WinKovix::OnEditPhpFile)
    EVT_BUTTON(WinKovix::ID_EDIT_APACHE_FILE, WinKovix::OnEditApacheFile)
    EVT_BUTTON(WinKovix::ID_PREFERENCES, WinKovix::OnPreferences)
    EVT_BUTTON(WinKovix::ID_WWW_SITE, WinKovix::OnWwwSite)
    EVT_BUTTON(WinKovix::ID_WWW_FOLDER, WinKovix::OnWwwFolder)
    EVT_BUTTON(WinKovix::ID_PHPMYADMIN, WinKovix::OnPhpMyAdmin)
    EVT_BUTTON(WinKovix::ID_PHPINFO, WinKovix::OnPhpInfo)
    EVT_BUTTON(WinKovix::ID_SQLITE, WinKovix::OnSqlite)
    EVT_BUTTON(WinKovix::ID_SITES, WinKovix::OnSites)
    EVT_HYPERLINK(WinKovix::ID_LINK_KOVIX, WinKovix::OnLink)
    EVT_HYPERLINK(WinKovix::ID_LINK_AUTHOR, WinKovix::OnLink)
    EVT_HYPERLINK(WinKovix::ID_UPDATE_LINK, WinKovix::OnLink)
    EVT_CLOSE(WinKovix::OnClose)
    EVT_ICONIZE(WinKovix::OnIconize)
wxEND_EVENT_TABLE()

namespace {

const int GAP = 5;
const char* const CONSOLE_RULE = "-------------------------------------------------\n\n";

wxString HostOf(const wxString& url) {
    return url.AfterFirst('/').AfterFirst('/').BeforeFirst('/');
}

// The paths, after making the first installed PHP version the current one when none is stored:
// the servers' template watch must start on the template that will really be used.
InstallPaths PathsWithVersion(const wxString& programFolder, AppSettings& settings) {
    InstallPaths paths(programFolder, settings);
    PhpVersions::SelectFirstIfUnset(settings, paths);
    return paths;
}

wxStaticText* MakeLabel(wxWindow* parent, int id, const wxString& label, const wxString& name,
                        int width = wxDefaultCoord) {
    return new wxStaticText(parent, id, label, wxDefaultPosition, wxSize(width, wxDefaultCoord),
                            width == wxDefaultCoord ? 0 : wxST_NO_AUTORESIZE, name);
}

wxButton* MakeButton(wxWindow* parent, int id, const wxString& label, const wxString& name,
                     const wxBitmap& bitmap, int width = 140) {
    auto* button = new wxButton(parent, id, label, wxDefaultPosition, wxSize(width, wxDefaultCoord),
                                0, wxDefaultValidator, name);
    if (bitmap.IsOk())
        button->SetBitmap(bitmap);
    return button;
}

wxBitmapButton* MakeBitmapButton(wxWindow* parent, int id, const wxBitmap& bitmap,
                                 const wxString& name) {
    return new wxBitmapButton(parent, id, bitmap, wxDefaultPosition, wxDefaultSize, wxBU_AUTODRAW,
                              wxDefaultValidator, name);
}

// A processor share as the whole number the status line and the chart show.
int CpuShare(double cpu) {
    return static_cast<std::int16_t>(cpu);
}

wxHyperlinkCtrl* MakeLink(wxWindow* parent, int id, const wxString& label, const wxString& url,
                          const wxString& name) {
    return new wxHyperlinkCtrl(parent, id, label, url, wxDefaultPosition, wxDefaultSize,
                               wxHL_DEFAULT_STYLE, name);
}

} // namespace

WinKovix::WinKovix(const wxString& programFolder, AppSettings& settings)
    : wxFrame(nullptr, wxID_ANY, "Kovix", wxDefaultPosition, wxDefaultSize,
              wxCAPTION | wxSYSTEM_MENU | wxMINIMIZE_BOX | wxCLOSE_BOX, "frame"),
      settings(settings), paths(PathsWithVersion(programFolder, settings)), statusTimer(this),
      stack(settings, std::make_unique<LiveStackServers>(paths)),
      lookupThread(HostNameLookupThread::Start()) {
    BuildControls();
    stack.SetRefusalHandler(
        [this](const StackController::StartOutcome& outcome) { ShowRefusal(outcome); });
    statusTimer.Start(TICK_MS);
    AppendConsole(GetLangText("WELCOME_MESSAGE") + "\n" + CONSOLE_RULE);
    FillPhpVersions();
    FillOnlineModes();
    wxCommandEvent choice(wxEVT_CHOICE, ID_PHP_VERSION);
    OnPhpVersion(choice);
    ApplyStoredPort();
    StartOnLaunch();
    stack.Ready();
}

WinKovix::~WinKovix() {
    statusTimer.Stop();
    if (trayIcon)
        trayIcon->RemoveIcon();
}

// ---------------------------------------------------------------------------------------------
// Building

void WinKovix::BuildControls() {
    panel = new wxPanel(this, ID_PANEL, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "panel");
    auto* rows = new wxBoxSizer(wxVERTICAL);
    rows->Add(BuildStatusRow(panel), 0, wxEXPAND | wxALL, GAP);
    auto* middle = new wxBoxSizer(wxHORIZONTAL);
    middle->Add(BuildConfigurationGroup(panel), 0, wxEXPAND | wxRIGHT, GAP);
    middle->Add(BuildToolsGroup(panel), 1, wxEXPAND);
    rows->Add(middle, 0, wxEXPAND | wxLEFT | wxRIGHT, GAP);
    TextBoxConsole =
        new wxTextCtrl(panel, ID_CONSOLE, "", wxDefaultPosition, wxSize(-1, 130),
                       wxTE_MULTILINE | wxTE_READONLY, wxDefaultValidator, "TextBoxConsole");
    rows->Add(TextBoxConsole, 0, wxEXPAND | wxALL, GAP);
    rows->Add(BuildInformationRow(panel), 0, wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM, GAP);
    panel->SetSizer(rows);

    SetIcons(Images::ProgramIcons());
    BuildStatsWindow();
    BuildTrayIcon();
    SetTitle(wxString("Kovix ") + VERSION);
    btn_Stop->Disable();
    WxStaticTextUpdateValue->SetLabel(GetLangText("INFO_SEARCH"));
    WxStaticTextIPValue->SetLabel(GetLangText("INFO_SEARCH"));
    ApplyTexts();
    SetClientSize(rows->ComputeFittingClientSize(this));
    SetSizeHints(GetSize(), GetSize());
    Centre(wxBOTH);
}

wxSizer* WinKovix::BuildStatusRow(wxPanel* parent) {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(BuildServerGroup(parent), 0, wxEXPAND | wxRIGHT, GAP);
    row->Add(BuildStatusGroup(parent), 1, wxEXPAND);
    return row;
}

wxSizer* WinKovix::BuildServerGroup(wxPanel* parent) {
    groupServer = new wxStaticBox(parent, ID_GROUP_SERVER, "Serveur", wxDefaultPosition,
                                  wxDefaultSize, 0, "groupBox");
    auto* group = new wxStaticBoxSizer(groupServer, wxVERTICAL);
    btn_Start = MakeButton(groupServer, ID_BTN_START, "Start", "btn_Start", Images::Start());
    btn_StartSolo =
        MakeBitmapButton(groupServer, ID_START_SOLO, Images::StartMenu(), "btn_StartSolo");
    btn_Stop = MakeButton(groupServer, ID_BTN_STOP, "Stop", "btn_Stop", Images::Stop());
    btn_StopSolo = MakeBitmapButton(groupServer, ID_STOP_SOLO, Images::StopMenu(), "btn_StopSolo");
    auto* grid = new wxFlexGridSizer(2, GAP, GAP);
    grid->Add(btn_Start, 0, wxEXPAND);
    grid->Add(btn_StartSolo, 0, wxEXPAND);
    grid->Add(btn_Stop, 0, wxEXPAND);
    grid->Add(btn_StopSolo, 0, wxEXPAND);
    group->Add(grid, 0, wxALL, GAP);
    return group;
}

wxSizer* WinKovix::BuildStatusGroup(wxPanel* parent) {
    groupStatus = new wxStaticBox(parent, ID_GROUP_STATUS, "Status", wxDefaultPosition,
                                  wxDefaultSize, 0, "groupBox");
    auto* group = new wxStaticBoxSizer(groupStatus, wxHORIZONTAL);
    auto* logo = new wxStaticBitmap(groupStatus, ID_BITMAP_LOGO, Images::Logo(), wxDefaultPosition,
                                    wxDefaultSize, 0, "staticBitmap");
    statusPicture = new wxStaticBitmap(groupStatus, ID_STATUS_PICTURE, Images::StatusStopped(),
                                       wxDefaultPosition, wxDefaultSize, 0, "staticBitmap");
    auto* lines = new wxFlexGridSizer(2, GAP, 2 * GAP);
    lines->Add(MakeLabel(groupStatus, ID_LABEL_APACHE, "Apache :", "WxStaticText1"));
    staticTextStApache =
        MakeLabel(groupStatus, ID_STATUS_APACHE, "Get Status...", "staticTextStApache", 170);
    lines->Add(staticTextStApache);
    lines->Add(MakeLabel(groupStatus, ID_LABEL_MYSQL, "MySQL :", "WxStaticText2"));
    staticTextStMySQL =
        MakeLabel(groupStatus, ID_STATUS_MYSQL, "Get Status...", "staticTextStMySQL", 170);
    lines->Add(staticTextStMySQL);
    group->Add(logo, 0, wxALIGN_CENTER_VERTICAL | wxALL, GAP);
    group->Add(statusPicture, 0, wxALIGN_CENTER_VERTICAL | wxALL, GAP);
    group->Add(lines, 1, wxALIGN_CENTER_VERTICAL | wxALL, GAP);
    group->Add(MakeBitmapButton(groupStatus, ID_STATS, Images::Stats(), "btn_Stat"), 0,
               wxALIGN_CENTER_VERTICAL | wxALL, GAP);
    return group;
}

wxSizer* WinKovix::BuildConfigurationGroup(wxPanel* parent) {
    groupConfiguration = new wxStaticBox(parent, ID_GROUP_CONFIGURATION, "Configuration",
                                         wxDefaultPosition, wxDefaultSize, 0, "groupBox");
    wxStaticBox* box = groupConfiguration;
    auto* group = new wxStaticBoxSizer(box, wxVERTICAL);
    auto* grid = new wxFlexGridSizer(2, GAP, GAP);
    grid->AddGrowableCol(1);
    WxStaticText3 = MakeLabel(box, ID_LABEL_PHP_VERSION, "PHP Version : ", "WxStaticText3");
    comboPHPVersion = new wxChoice(box, ID_PHP_VERSION, wxDefaultPosition, wxSize(150, -1), {}, 0,
                                   wxDefaultValidator, "comboPHPVersion");
    WxStaticText4 = MakeLabel(box, ID_LABEL_PORT, "Apache Port : ", "WxStaticText4");
    portSpin = new wxSpinCtrl(box, ID_PORT, "80", wxDefaultPosition, wxSize(150, -1),
                              wxSP_ARROW_KEYS, 0, 80000, 80, "wxSpinCtrl");
    comboOnlineMode = new wxChoice(box, ID_ONLINE_MODE, wxDefaultPosition, wxSize(150, -1), {}, 0,
                                   wxDefaultValidator, "comboOnlineMode");
    btn_PhpExt =
        MakeButton(box, ID_PHP_EXT, "PHP Extensions", "btn_PhpExt", Images::PhpConfig(), 150);
    btn_ApacheConf = MakeButton(box, ID_APACHE_CONF, "Apache Config", "btn_ApacheConf",
                                Images::ApacheConfig(), 150);
    auto* phpRow = new wxBoxSizer(wxHORIZONTAL);
    phpRow->Add(btn_PhpExt, 1, wxEXPAND | wxRIGHT, GAP);
    phpRow->Add(MakeBitmapButton(box, ID_EDIT_PHP_FILE, Images::EditPhpFile(), "btn_ConfigPHPFile"),
                0, wxEXPAND);
    auto* apacheRow = new wxBoxSizer(wxHORIZONTAL);
    apacheRow->Add(btn_ApacheConf, 1, wxEXPAND | wxRIGHT, GAP);
    apacheRow->Add(MakeBitmapButton(box, ID_EDIT_APACHE_FILE, Images::EditApacheFile(),
                                    "btn_ConfigApacheFile"),
                   0, wxEXPAND);

    grid->Add(WxStaticText3, 0, wxALIGN_CENTER_VERTICAL);
    grid->Add(comboPHPVersion, 0, wxEXPAND);
    grid->Add(WxStaticText4, 0, wxALIGN_CENTER_VERTICAL);
    grid->Add(portSpin, 0, wxEXPAND);
    grid->Add(new wxStaticBitmap(box, ID_BITMAP_GEAR, Images::Gear(), wxDefaultPosition,
                                 wxDefaultSize, 0, "staticBitmap"),
              0, wxALIGN_CENTER);
    grid->Add(comboOnlineMode, 0, wxEXPAND);
    grid->AddSpacer(0);
    grid->Add(phpRow, 0, wxEXPAND);
    grid->AddSpacer(0);
    grid->Add(apacheRow, 0, wxEXPAND);
    group->Add(grid, 1, wxEXPAND | wxALL, GAP);
    return group;
}

wxSizer* WinKovix::BuildToolsGroup(wxPanel* parent) {
    groupTools = new wxStaticBox(parent, ID_GROUP_TOOLS, "Tools", wxDefaultPosition, wxDefaultSize,
                                 0, "groupBox");
    auto* group = new wxStaticBoxSizer(groupTools, wxHORIZONTAL);
    auto* tools = new wxPanel(groupTools, ID_PANEL_TOOLS, wxDefaultPosition, wxDefaultSize,
                              wxTAB_TRAVERSAL, "panel");
    WxButtonWWW = MakeButton(tools, ID_WWW_SITE, "www Site", "WxButtonWWW", Images::WwwSite());
    WxButtonWWWF =
        MakeButton(tools, ID_WWW_FOLDER, "www Folder", "WxButtonWWWF", Images::WwwFolder());
    WxButtonToolsPlus = MakeBitmapButton(tools, ID_TOOLS_PLUS, Images::Logs(), "WxButtonToolsPlus");
    auto* grid = new wxFlexGridSizer(2, GAP, GAP);
    grid->AddGrowableCol(0);
    grid->AddGrowableCol(1);
    grid->Add(WxButtonWWW, 0, wxEXPAND);
    grid->Add(WxButtonWWWF, 0, wxEXPAND);
    grid->Add(
        MakeButton(tools, ID_PHPMYADMIN, "PHPMyAdmin", "WxButtonPHPAdmin", Images::PhpMyAdmin()), 0,
        wxEXPAND);
    grid->Add(MakeButton(tools, ID_PHPINFO, "PHPInfo", "WxButtonPHPInfo", Images::PhpInfo()), 0,
              wxEXPAND);
    grid->Add(MakeButton(tools, ID_SQLITE, "SQLite", "WxButtonSQLite", Images::SQLite()), 0,
              wxEXPAND);
    // The sites button shares the logs button's cell, so that no other control moves.
    btn_Sites = new wxButton(tools, ID_SITES, "Sites", wxDefaultPosition, wxDefaultSize, 0,
                             wxDefaultValidator, "btn_Sites");
    auto* lastCell = new wxBoxSizer(wxHORIZONTAL);
    lastCell->Add(WxButtonToolsPlus, 0, wxRIGHT, GAP);
    lastCell->Add(btn_Sites, 1, wxEXPAND);
    grid->Add(lastCell, 0, wxEXPAND);
    // The developer's tools take a row of their own under the grid.
    toolsPanel = new ToolsPanel(tools, paths);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(grid, 0, wxEXPAND);
    column->Add(toolsPanel, 0, wxEXPAND | wxTOP, GAP);
    tools->SetSizer(column);
    group->Add(new wxStaticBitmap(groupTools, ID_BITMAP_GLOBE, Images::Globe(), wxDefaultPosition,
                                  wxDefaultSize, 0, "staticBitmap"),
               0, wxALIGN_TOP | wxALL, GAP);
    group->Add(tools, 1, wxEXPAND | wxALL, GAP);
    return group;
}

wxSizer* WinKovix::BuildInformationRow(wxPanel* parent) {
    auto* box = new wxStaticBox(parent, ID_GROUP_INFORMATION, "Information", wxDefaultPosition,
                                wxDefaultSize, 0, "groupBox");
    auto* group = new wxStaticBoxSizer(box, wxVERTICAL);
    auto* grid = new wxFlexGridSizer(2, GAP, GAP);
    WxStaticTextIP = MakeLabel(box, ID_LABEL_IP, "Public IP :", "WxStaticTextIP");
    WxStaticTextIPValue = MakeLabel(box, ID_IP_VALUE, "Recherche...", "WxStaticTextIPValue");
    WxStaticTextUpdate =
        MakeLabel(box, ID_LABEL_UPDATE, wxString::FromUTF8("Mise à jour :"), "WxStaticTextUpdate");
    WxStaticTextUpdateValue =
        MakeLabel(box, ID_UPDATE_VALUE, "Recherche...", "WxStaticTextUpdateValue");
    WxStaticTextUpdateValueLink =
        MakeLink(box, ID_UPDATE_LINK, "aa", PRODUCT_SITE, "WxStaticTextUpdateValueLink");
    WxStaticTextUpdateValueLink->Hide();
    auto* update = new wxBoxSizer(wxHORIZONTAL);
    update->Add(WxStaticTextUpdateValue);
    update->Add(WxStaticTextUpdateValueLink);
    grid->Add(WxStaticTextIP);
    grid->Add(WxStaticTextIPValue);
    grid->Add(WxStaticTextUpdate);
    grid->Add(update);
    group->Add(grid, 1, wxEXPAND | wxALL, GAP);

    auto* links = new wxPanel(parent, ID_PANEL_LINKS, wxDefaultPosition, wxDefaultSize,
                              wxTAB_TRAVERSAL, "panel");
    auto* linkColumn = new wxBoxSizer(wxVERTICAL);
    linkColumn->Add(
        MakeLink(links, ID_LINK_KOVIX, HostOf(PRODUCT_SITE), PRODUCT_SITE, "hyperLinkKovix"), 0,
        wxALIGN_RIGHT | wxBOTTOM, GAP);
    linkColumn->Add(
        MakeLink(links, ID_LINK_AUTHOR, HostOf(AUTHOR_SITE), AUTHOR_SITE, "hyperLinkAuthor"), 0,
        wxALIGN_RIGHT);
    links->SetSizer(linkColumn);
    WxButtonPref = MakeButton(parent, ID_PREFERENCES, "Preferences", "WxButtonPref",
                              Images::Preferences(), 150);
    auto* side = new wxBoxSizer(wxVERTICAL);
    side->Add(WxButtonPref, 0, wxALIGN_RIGHT | wxBOTTOM, GAP);
    side->Add(links, 0, wxALIGN_RIGHT);

    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(group, 1, wxEXPAND | wxRIGHT, GAP);
    row->Add(side, 0, wxALIGN_BOTTOM);
    return row;
}

void WinKovix::BuildStatsWindow() {
    stats = new WinStats(this, &cpuSeries);
}

void WinKovix::BuildTrayIcon() {
    trayIcon = std::make_unique<WinTaskBarIcon>(this);
    trayIcon->SetIcon(Images::TrayIcon(), "Kovix");
}

void WinKovix::FillPhpVersions() {
    const wxString current = settings.GetPhpVersion();
    for (const wxString& version : PhpVersions::List(paths))
        comboPHPVersion->Append(version);
    const int index = comboPHPVersion->FindString(current, true);
    comboPHPVersion->SetSelection(index == wxNOT_FOUND ? 0 : index);
}

void WinKovix::FillOnlineModes() {
    comboOnlineMode->Append("Offline Mode");
    comboOnlineMode->Append("Online Mode");
    comboOnlineMode->SetSelection(settings.IsOnline() ? 1 : 0);
}

void WinKovix::ApplyStoredPort() {
    portSpin->SetValue(settings.GetPort());
    settings.SetPort(portSpin->GetValue());
}

void WinKovix::StartOnLaunch() {
    if (settings.GetStartServersOnStart() && !IsApacheRunning() && !IsMysqlRunning())
        StartBoth();
}

void WinKovix::ApplyTexts() {
    btn_Start->SetLabel(GetLangText("START"));
    btn_Stop->SetLabel(GetLangText("STOP"));
    groupStatus->SetLabel(GetLangText("STATUS"));
    groupServer->SetLabel(GetLangText("SERVER"));
    groupTools->SetLabel(GetLangText("TOOLS"));
    groupConfiguration->SetLabel(GetLangText("CONFIGURATION"));
    WxButtonPref->SetLabel(GetLangText("PREFERENCES"));
    staticTextStApache->SetLabel(GetLangText("GET_STATUS"));
    staticTextStMySQL->SetLabel(GetLangText("GET_STATUS"));
    WxStaticTextIP->SetLabel(GetLangText("INFO_PUBLICIP"));
    WxStaticTextUpdate->SetLabel(GetLangText("INFO_UPDATE"));
    WxButtonWWW->SetLabel(GetLangText("WWW_SITE"));
    btn_Sites->SetLabel(GetLangText("SITES"));
    WxButtonWWWF->SetLabel(GetLangText("WWW_FODLER"));
    WxStaticText4->SetLabel(GetLangText("APACHE_PORT2"));
    WxStaticText3->SetLabel(GetLangText("PHP_VERSION2"));
    btn_ApacheConf->SetLabel(GetLangText("APACHE_CONFIG"));
    btn_PhpExt->SetLabel(GetLangText("PHP_CONFIG"));
    toolsPanel->ApplyTexts();
    panel->Layout();
}

void WinKovix::AppendConsole(const wxString& text) {
    TextBoxConsole->AppendText(text);
    TextBoxConsole->ShowPosition(TextBoxConsole->GetLastPosition());
}

void WinKovix::ShowInformation(const wxString& publicIp, const wxString& latestVersion,
                               bool newer) {
    WxStaticTextIPValue->SetLabel(publicIp.empty() ? GetLangText("INFO_PUBLICIP_NO") : publicIp);
    if (!newer) {
        WxStaticTextUpdateValue->SetLabel(GetLangText("INFO_UPDATE_NO") + " ( " + VERSION + " )");
    } else {
        WxStaticTextUpdateValue->Hide();
        WxStaticTextUpdateValueLink->SetLabel(GetLangText("INFO_UPDATE_AVAILABLE") + " ( " +
                                              latestVersion + " )");
        WxStaticTextUpdateValueLink->SetURL(PRODUCT_SITE);
        WxStaticTextUpdateValueLink->Show();
    }
    panel->Layout();
}

// ---------------------------------------------------------------------------------------------
// Server commands

bool WinKovix::IsApacheRunning() const {
    return stack.IsApacheRunning();
}

bool WinKovix::IsMysqlRunning() const {
    return stack.IsMysqlRunning();
}

void WinKovix::StartBoth() {
    if (!stack.IsBusy())
        btn_Start->Disable();
    stack.StartBoth();
}

void WinKovix::StartApacheOnly() {
    if (!stack.IsBusy())
        btn_Start->Disable();
    stack.StartApacheOnly();
}

// Shown while the refused start is still under way: no tick runs behind the message.
void WinKovix::ShowRefusal(const StackController::StartOutcome& outcome) {
    if (!outcome.holderLine.empty())
        AppendConsole(outcome.holderLine + "\n");
    wxMessageBox(outcome.message, "Kovix", wxOK, this);
}

void WinKovix::StartMysqlOnly() {
    stack.StartMysqlOnly();
}

void WinKovix::StopBoth() {
    stack.StopBoth();
}

void WinKovix::StopApacheOnly() {
    stack.StopApacheOnly();
}

void WinKovix::StopMysqlOnly() {
    stack.StopMysqlOnly();
}

// ---------------------------------------------------------------------------------------------
// Status loop

void WinKovix::StatusTick() {
    const std::optional<StackController::Status> status = stack.Tick();
    if (!status)
        return;
    if (!status->output.empty())
        AppendConsole(status->output);
    ShowServerState(*status);
    UpdateInformation();
}

wxString WinKovix::StateText(bool runs, double cpu) const {
    if (!runs)
        return GetLangText("STOPPED");
    return GetLangText("RUNNING") + wxString::Format(" - CPU: %d%%", CpuShare(cpu));
}

void WinKovix::ShowServerState(const StackController::Status& status) {
    const bool apacheRuns = status.ApacheRuns();
    const bool mysqlRuns = status.MysqlRuns();
    SetLabelIfChanged(staticTextStApache, StateText(apacheRuns, status.apacheCpu));
    SetLabelIfChanged(staticTextStMySQL, StateText(mysqlRuns, status.mysqlCpu));
    if (apacheRuns || mysqlRuns)
        FeedChart(CpuShare(status.apacheCpu), CpuShare(status.mysqlCpu));
    btn_Start->Enable(!apacheRuns && !mysqlRuns);
    btn_Stop->Enable(apacheRuns || mysqlRuns);
    ShowStatusPicture(apacheRuns || mysqlRuns);
}

// The tick runs twice a second: only a change is drawn again.
void WinKovix::SetLabelIfChanged(wxStaticText* label, const wxString& text) {
    if (label->GetLabel() != text)
        label->SetLabel(text);
}

void WinKovix::ShowStatusPicture(bool running) {
    const int picture = running ? 1 : 0;
    if (picture == shownPicture)
        return;
    shownPicture = picture;
    statusPicture->SetBitmap(running ? Images::StatusRunning() : Images::StatusStopped());
}

void WinKovix::FeedChart(int apacheShare, int mysqlShare) {
    cpuSeries[0].Add(apacheShare);
    cpuSeries[1].Add(mysqlShare);
    cpuSeries[2].Add(apacheShare + mysqlShare);
    stats->SeriesChanged();
}

// Fills the information panel once, on the first tick after the network lookup has its answers.
void WinKovix::UpdateInformation() {
    if (infoPending != 1 || !lookupThread->IsResolved())
        return;
    infoPending = 0;
    const wxString latest = lookupThread->LatestVersion();
    ShowInformation(lookupThread->PublicIp(), latest, CompareVersions(VERSION, latest) > 0);
}

// ---------------------------------------------------------------------------------------------
// Menus and files

wxMenu* WinKovix::BuildStartMenu() const {
    auto* menu = new wxMenu;
    menu->Append(ID_MENU_START_APACHE, GetLangText("START_APACHE"))->Enable(!IsApacheRunning());
    menu->Append(ID_MENU_START_MYSQL, GetLangText("START_MYSQL"))->Enable(!IsMysqlRunning());
    return menu;
}

wxMenu* WinKovix::BuildStopMenu() const {
    auto* menu = new wxMenu;
    menu->Append(ID_MENU_STOP_APACHE, GetLangText("STOP_APACHE"))->Enable(IsApacheRunning());
    menu->Append(ID_MENU_STOP_MYSQL, GetLangText("STOP_MYSQL"))->Enable(IsMysqlRunning());
    return menu;
}

wxMenu* WinKovix::BuildLogsMenu() const {
    auto* menu = new wxMenu;
    menu->Append(ID_MENU_LOG_APACHE_ACCESS, GetLangText("LOG_APACHE_ACCESS"))
        ->Enable(wxFileExists(paths.ApacheAccessLog()));
    menu->Append(ID_MENU_LOG_APACHE_ERROR, GetLangText("LOG_APACHE_ERROR"))
        ->Enable(wxFileExists(paths.ApacheErrorLog()));
    menu->Append(ID_MENU_LOG_APACHE_DELETE, GetLangText("LOG_APACHE_DELETE"));
    menu->AppendSeparator();
    menu->Append(ID_MENU_LOG_MYSQL_MAINFILE, GetLangText("LOG_MYSQL_MAINFILE"))
        ->Enable(!MysqlErrorFile().empty());
    menu->Append(ID_MENU_LOG_MYSQL_DELETE, GetLangText("LOG_MYSQL_DELETE"));
    menu->AppendSeparator();
    menu->Append(ID_MENU_LOG_SESSION_DELETE, GetLangText("LOG_SESSION_DELETE"));
    menu->AppendSeparator();
    menu->Append(ID_MENU_LOG_ALL_DELETE, GetLangText("LOG_ALL_DELETE"));
    return menu;
}

// Pops the menu up at the mouse, over the button just clicked, and discards it.
void WinKovix::PopupAndDiscard(wxMenu* menu) {
    PopupMenu(menu);
    delete menu;
}

// The first "*.err" file of the MySQL data folder, or "" when there is none.
wxString WinKovix::MysqlErrorFile() const {
    const wxString folder = paths.MysqlDataFolder();
    const std::vector<wxString> names = ListFolder(folder, "*.err", wxDIR_FILES);
    return names.empty() ? wxString() : folder + Platform::Get().PathSeparator() + names.front();
}

void WinKovix::ShowFile(const wxString& path) {
    Platform::Get().OpenProgram(settings.GetTextEditor(), path);
}

void WinKovix::RunLogAction(Cleanup::LogAction action) {
    const wxString refusal = Cleanup::RefusalKey(action, IsApacheRunning(), IsMysqlRunning());
    const wxString message = refusal.empty() ? Cleanup::Run(action, paths) : GetLangText(refusal);
    if (!message.empty())
        wxMessageBox(wxString(message).Trim(), "Kovix", wxOK, this);
}

// ---------------------------------------------------------------------------------------------
// Tools and windows

void WinKovix::OpenLocalSite() {
    Platform::Get().OpenUrl(paths.LocalSiteUrl());
}

void WinKovix::OpenWwwFolder() {
    Platform::Get().OpenFolder(paths.WwwFolder());
}

void WinKovix::OpenPhpMyAdmin() {
    Platform::Get().OpenUrl(paths.PhpMyAdminUrl());
}

void WinKovix::OpenPhpInfo() {
    Platform::Get().OpenUrl(paths.PhpInfoUrl());
}

void WinKovix::OpenSqliteBrowser() {
    Platform::Get().OpenProgram(paths.SqliteBrowser(), "");
}

void WinKovix::ShowOrHide() {
    if (IsShown()) {
        Hide();
        return;
    }
    Show();
    Restore();
    Raise();
}

void WinKovix::ShowFromTray() {
    Show();
    Restore();
}

void WinKovix::OpenApacheDialog() {
    WinApacheConf dialog(this, paths);
    dialog.ShowModal();
}
void WinKovix::OpenPhpDialog() {
    WinPHPExt dialog(this, paths);
    dialog.ShowModal();
}

// ---------------------------------------------------------------------------------------------
// Event handlers

void WinKovix::OnTimer(wxTimerEvent&) {
    StatusTick();
}
void WinKovix::OnStart(wxCommandEvent&) {
    StartBoth();
}
void WinKovix::OnStop(wxCommandEvent&) {
    StopBoth();
}
void WinKovix::OnStartMenu(wxCommandEvent&) {
    PopupAndDiscard(BuildStartMenu());
}
void WinKovix::OnStopMenu(wxCommandEvent&) {
    PopupAndDiscard(BuildStopMenu());
}
void WinKovix::OnStartApache(wxCommandEvent&) {
    StartApacheOnly();
}
void WinKovix::OnStartMysql(wxCommandEvent&) {
    StartMysqlOnly();
}
void WinKovix::OnStopApache(wxCommandEvent&) {
    StopApacheOnly();
}
void WinKovix::OnStopMysql(wxCommandEvent&) {
    StopMysqlOnly();
}
void WinKovix::OnLogsMenu(wxCommandEvent&) {
    PopupAndDiscard(BuildLogsMenu());
}
void WinKovix::OnShowAccessLog(wxCommandEvent&) {
    ShowFile(paths.ApacheAccessLog());
}
void WinKovix::OnShowErrorLog(wxCommandEvent&) {
    ShowFile(paths.ApacheErrorLog());
}
void WinKovix::OnShowMysqlLog(wxCommandEvent&) {
    ShowFile(MysqlErrorFile());
}
void WinKovix::OnDeleteApacheLogs(wxCommandEvent&) {
    RunLogAction(Cleanup::LogAction::ApacheLogs);
}
void WinKovix::OnDeleteMysqlLogs(wxCommandEvent&) {
    RunLogAction(Cleanup::LogAction::MysqlLogs);
}
void WinKovix::OnDeleteSessions(wxCommandEvent&) {
    RunLogAction(Cleanup::LogAction::Sessions);
}
void WinKovix::OnDeleteAll(wxCommandEvent&) {
    RunLogAction(Cleanup::LogAction::All);
}

void WinKovix::OnPhpVersion(wxCommandEvent&) {
    settings.SetPhpVersion(comboPHPVersion->GetStringSelection());
    if (firstPhpEvent)
        firstPhpEvent = false;
    else
        stack.MarkRestart();
}

void WinKovix::OnOnlineMode(wxCommandEvent&) {
    settings.SetOnline(comboOnlineMode->GetSelection() == 1);
    stack.MarkRestart();
}

void WinKovix::OnPort(wxSpinEvent&) {
    settings.SetPort(portSpin->GetValue());
}

void WinKovix::OnPhpExt(wxCommandEvent&) {
    OpenPhpDialog();
}
void WinKovix::OnApacheConf(wxCommandEvent&) {
    OpenApacheDialog();
}

void WinKovix::OnStats(wxCommandEvent&) {
    stats->Show();
    stats->Raise();
}

void WinKovix::OnEditPhpFile(wxCommandEvent&) {
    ShowFile(paths.PhpSourceConfig());
}
void WinKovix::OnEditApacheFile(wxCommandEvent&) {
    ShowFile(paths.ApacheSourceConfig());
}

void WinKovix::OnPreferences(wxCommandEvent&) {
    WinPrefs prefs(this, settings, paths.SettingsFile());
    prefs.ShowModal();
    ApplyTexts();
    stats->ApplyTexts();
}

void WinKovix::OnSites(wxCommandEvent&) {
    WinSites sites(this, settings, paths);
    sites.ShowModal();
}

void WinKovix::OnWwwSite(wxCommandEvent&) {
    OpenLocalSite();
}
void WinKovix::OnWwwFolder(wxCommandEvent&) {
    OpenWwwFolder();
}
void WinKovix::OnPhpMyAdmin(wxCommandEvent&) {
    OpenPhpMyAdmin();
}
void WinKovix::OnPhpInfo(wxCommandEvent&) {
    OpenPhpInfo();
}
void WinKovix::OnSqlite(wxCommandEvent&) {
    OpenSqliteBrowser();
}

void WinKovix::OnLink(wxHyperlinkEvent& event) {
    Platform::Get().OpenUrl(event.GetURL());
}

// Cancel keeps the window even when the close is forced (the tray's Exit). The settings are
// written while the window still stands, so that a failure box has something to stand over.
void WinKovix::OnClose(wxCloseEvent& event) {
    int answer = wxNO;
    if (IsApacheRunning() || IsMysqlRunning()) {
        answer =
            wxMessageBox(GetLangText("STOPSERVER_MESSAGE"), "Kovix", wxYES_NO | wxCANCEL, this);
        if (answer == wxCANCEL) {
            if (event.CanVeto())
                event.Veto();
            return;
        }
    }
    // Destroy only schedules the deletion: no tick (and no pending restart) may run meanwhile.
    statusTimer.Stop();
    DialogParts::SaveSettingsChanges(this, settings, paths.SettingsFile());
    Hide();
    if (answer == wxYES)
        stack.StopBoth();
    Destroy();
}

// Only a minimise hides the window (GTK also reports the restore), and only into a tray that
// exists: without one the window would be unreachable.
void WinKovix::OnIconize(wxIconizeEvent& event) {
    if (event.IsIconized() && WinTaskBarIcon::IsAvailable())
        Hide();
    event.Skip();
}
