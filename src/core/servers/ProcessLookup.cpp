#include "core/servers/ProcessLookup.h"

#include "core/servers/ProcessCache.h"
#include "platform/Platform.h"

#include <wx/utils.h>

#include <chrono>
#include <thread>

namespace ProcessLookup {

namespace {

wxString ScopeFolder(const wxString& tree) {
    wxString scope;
    if (!wxGetEnv("KOVIX_PROCESS_SCOPE", &scope) || scope.empty())
        scope = tree;
    return scope;
}

std::vector<long> InScope(const std::vector<long>& pids, const wxString& scope) {
    std::vector<long> inScope;
    for (long pid : pids)
        if (Platform::Get().ProcessLivesIn(pid, scope))
            inScope.push_back(pid);
    return inScope;
}

} // namespace

std::vector<std::vector<long>> FindEach(const std::vector<wxString>& names, const wxString& tree) {
    std::vector<std::vector<long>> found = Platform::Get().FindProcessesByNames(names);
    const wxString scope = ScopeFolder(tree);
    for (std::vector<long>& pids : found)
        pids = InScope(pids, scope);
    return found;
}

std::vector<std::vector<long>> FindEach(const std::vector<wxString>& names, const wxString& tree,
                                        ProcessCache& cache) {
    return cache.FindEach(names, ScopeFolder(tree));
}

std::vector<long> Find(const wxString& name, const wxString& tree) {
    return FindEach({name}, tree).front();
}

bool IsRunning(const wxString& name, const wxString& tree) {
    return !Find(name, tree).empty();
}

void KillAll(const wxString& name, const wxString& tree) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point giveUp = Clock::now() + std::chrono::seconds(5);
    for (std::vector<long> pids = Find(name, tree); !pids.empty() && Clock::now() < giveUp;
         pids = Find(name, tree)) {
        for (long pid : pids)
            Platform::Get().KillProcess(pid);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

} // namespace ProcessLookup
