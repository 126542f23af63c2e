// The panel's executable: the application object does everything.
#include "app/WinMainApp.h"

wxIMPLEMENT_APP(WinMainApp);
