#include "core/ProcessLookup.h"

#include "platform/Platform.h"

#include <wx/utils.h>

#include <chrono>
#include <thread>

namespace ProcessLookup {

std::vector<long> Find(const wxString& name) {
    std::vector<long> pids = Platform::Get().FindProcessesByName(name);
    wxString scope;
    if (!wxGetEnv("KOVIX_PROCESS_SCOPE", &scope) || scope.empty())
        return pids;
    std::vector<long> inScope;
    for (long pid : pids)
        if (Platform::Get().ProcessLivesIn(pid, scope))
            inScope.push_back(pid);
    return inScope;
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
