#pragma once

#include <wx/string.h>

#include <vector>

class ProcessCache;

// Server processes of one tree found and ended by executable name, also those the panel did not
// start. A process belongs to the tree when its working folder, executable or command line lies
// in the tree's folder, so several trees (of one user or of several) share a machine without
// seeing or stopping each other's servers. The environment variable KOVIX_PROCESS_SCOPE, when
// set, names another folder to look in instead (tests narrow the lookup with it).
namespace ProcessLookup {

std::vector<long> Find(const wxString& name, const wxString& tree);
// For each name, its processes; one pass over the process table (the status tick's lookup).
std::vector<std::vector<long>> FindEach(const std::vector<wxString>& names, const wxString& tree);
// The same through a cache that reads only what changed since its previous lookup (the status
// tick's lookup, twice a second).
std::vector<std::vector<long>> FindEach(const std::vector<wxString>& names, const wxString& tree,
                                        ProcessCache& cache);
bool IsRunning(const wxString& name, const wxString& tree);
// Kills every process of the name, scanning again until none is left (a server may fork while
// it is being killed). Gives up after a few seconds of passes.
void KillAll(const wxString& name, const wxString& tree);

} // namespace ProcessLookup
