#include "core/servers/StackServers.h"

#include "core/TreeLock.h"
#include "core/servers/PortCheck.h"
#include "core/servers/ProcessLookup.h"

#include <chrono>
#include <thread>

ServerPids LiveStackServers::FindServers() {
    const std::vector<wxString> names = {InstallPaths::ApacheProcessName(),
                                         InstallPaths::MysqlProcessName()};
    std::vector<std::vector<long>> found =
        useCache ? ProcessLookup::FindEach(names, programFolder, processes)
                 : ProcessLookup::FindEach(names, programFolder);
    return {std::move(found[0]), std::move(found[1])};
}

bool LiveStackServers::TemplatesChanged() {
    return apache.HasSourceChanged() || apache.HasPhpSourceChanged();
}

bool LiveStackServers::IsPortFree(int port) {
    return PortCheck::IsPortFree(port);
}

wxString LiveStackServers::PortHolderLine(int port) {
    return PortCheck::PortHolderLine(port);
}

std::shared_ptr<void> LiveStackServers::LockTree() {
    return std::make_shared<TreeLock>(programFolder);
}

std::uint64_t LiveStackServers::NowMs() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

void LiveStackServers::SleepMs(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}
