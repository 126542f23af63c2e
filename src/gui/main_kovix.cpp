// The panel's executable: the application object does everything.
#include "gui/WinMainApp.h"

wxIMPLEMENT_APP(WinMainApp);
