#include "core/servers/ProcessLookup.h"

#include "platform/Platform.h"

#include <wx/utils.h>

#include <chrono>
#include <thread>

namespace ProcessLookup {

namespace {

std::vector<long> InScope(const std::vector<long>& pids) {
    wxString scope;
    if (!wxGetEnv("KOVIX_PROCESS_SCOPE", &scope) || scope.empty())
        return pids;
    std::vector<long> inScope;
    for (long pid : pids)
        if (Platform::Get().ProcessLivesIn(pid, scope))
            inScope.push_back(pid);
    return inScope;
}

} // namespace

std::vector<std::vector<long>> FindEach(const std::vector<wxString>& names) {
    std::vector<std::vector<long>> found = Platform::Get().FindProcessesByNames(names);
    for (std::vector<long>& pids : found)
        pids = InScope(pids);
    return found;
}

std::vector<long> Find(const wxString& name) {
    return FindEach({name}).front();
}

bool IsRunning(const wxString& name) {
    return !Find(name).empty();
}

void KillAll(const wxString& name) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point giveUp = Clock::now() + std::chrono::seconds(5);
    for (std::vector<long> pids = Find(name); !pids.empty() && Clock::now() < giveUp;
         pids = Find(name)) {
        for (long pid : pids)
            Platform::Get().KillProcess(pid);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

} // namespace ProcessLookup
