#pragma once

#include <wx/string.h>

class AppSettings;

// The test made before Apache starts: is its port already taken, and by whom.
namespace PortCheck {

// Empty when Apache may listen on the port; else, in the current language, why not and which
// port to choose instead.
wxString PortRefusal(int port);
// True when nothing accepts a connection on localhost:port within one second.
bool IsPortFree(int port);
// The message shown when the Apache port is taken, in the current language, with the port text
// exactly as stored in the settings.
wxString PortTakenMessage(const AppSettings& settings);
// A line naming the process that listens on the port, e.g. "Port 80 is held by nginx (pid 812)."
// or, when it cannot be seen, "Port 80 is held by an unknown process."
wxString PortHolderLine(int port);

} // namespace PortCheck
