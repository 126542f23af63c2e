#pragma once

#include "core/InstallPaths.h"
#include "core/servers/CpuMeter.h"
#include "core/servers/ServerProcess.h"

#include <memory>
#include <vector>

// What the Apache and MySQL server objects share: the paths of the tree, the record of the last
// start and the lookup of the server's processes by name with their processor share.
class ServerBase {
public:
    // Whether a process of the server's name runs, whoever started it.
    bool IsRunning() const;
    double CpuUse();
    // The processor share of processes already looked up (the status tick looks both servers up
    // in one pass).
    double CpuUse(const std::vector<long>& pids) { return meter.Measure(pids); }
    // Pid of the child of the last start, 0 when there is none.
    long StartedPid() const { return record ? record->Pid() : 0; }
    // Whether the child of the last start still runs (asked of the system; reaps it otherwise).
    bool HasActiveChild() { return record && record->IsActive(); }

protected:
    ServerBase(const InstallPaths& paths, const wxString& processName)
        : paths(paths), processName(processName) {}
    ~ServerBase() = default;

    // A child of the tree's programs, which find the tree's own libraries first when it has some.
    std::unique_ptr<ServerProcess> NewRecord(const wxString& commandLine,
                                             const wxString& workingFolder) const;

    InstallPaths paths;
    std::unique_ptr<ServerProcess> record;

private:
    wxString processName;
    CpuMeter meter;
};
