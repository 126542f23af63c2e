#pragma once

#include <wx/string.h>

#include <vector>

// Server processes found and ended by executable name, also those the panel did not start.
// When the environment variable KOVIX_PROCESS_SCOPE names a folder, only processes whose working
// folder, executable or command line lies in that folder count: several trees (or test runs) can
// then share one machine without stopping each other's servers.
namespace ProcessLookup {

std::vector<long> Find(const wxString& name);
// For each name, its processes; one pass over the process table (the status tick's lookup).
std::vector<std::vector<long>> FindEach(const std::vector<wxString>& names);
bool IsRunning(const wxString& name);
// Kills every process of the name, scanning again until none is left (a server may fork while
// it is being killed). Gives up after a few seconds of passes.
void KillAll(const wxString& name);

} // namespace ProcessLookup
