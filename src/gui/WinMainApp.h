#pragma once

#include "core/AppSettings.h"

#include <wx/app.h>
#include <wx/snglinst.h>

#include <memory>

// The panel's application object: finds the program folder, loads kovix.ini, sets the language,
// refuses a second panel of the same user, and opens the main window (or only the tray icon in
// tray mode). The main window writes the settings it changed when it closes.
class WinMainApp : public wxApp {
public:
    bool OnInit() override;
    int OnExit() override;

    // "Kovix-Server-<login name>": one panel per user.
    static wxString InstanceName();
    // Creates the checker of this user's panel. When another one runs, tells the user and
    // returns false; the checker is made either way.
    static bool ClaimSingleInstance(std::unique_ptr<wxSingleInstanceChecker>& checker);

private:
    std::unique_ptr<AppSettings> settings;
    std::unique_ptr<wxSingleInstanceChecker> instanceChecker;
};
