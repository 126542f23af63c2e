#pragma once

#include "core/servers/ApacheServer.h"
#include "core/servers/MysqlServer.h"
#include "core/servers/ProcessCache.h"

#include <cstdint>
#include <memory>
#include <vector>

// The processes of both servers found in one pass over the process table.
struct ServerPids {
    std::vector<long> apache;
    std::vector<long> mysql;
};

// What StackController asks of the two servers, the port test and the clock. LiveStackServers
// is the real thing; tests give a fake that records what was asked and answers as told.
class StackServers {
public:
    virtual ~StackServers() = default;

    virtual ServerPids FindServers() = 0;
    virtual bool IsApacheRunning() = 0;
    virtual bool IsMysqlRunning() = 0;
    // False only while another Apache start is in progress.
    virtual bool StartApache() = 0;
    virtual void StopApache() = 0;
    virtual void StartMysql() = 0;
    // Skipped while an earlier shutdown is still under way. False when the shutdown could not
    // even be asked (its program could not be run; ReadOutput says why).
    virtual bool StopMysql() = 0;
    // Whether the Apache or the PHP template changed since the last question.
    virtual bool TemplatesChanged() = 0;
    // What both servers (and MySQL's admin tool) wrote since the last call.
    virtual wxString ReadOutput() = 0;
    virtual double ApacheCpu(const std::vector<long>& pids) = 0;
    virtual double MysqlCpu(const std::vector<long>& pids) = 0;

    virtual bool IsPortFree(int port) = 0;
    virtual wxString PortHolderLine(int port) = 0;
    // The port the next MySQL start listens on.
    virtual int MysqlPort() = 0;

    // The tree lock, held by the caller around each start and stop.
    virtual std::shared_ptr<void> LockTree() = 0;

    // A monotonic clock in milliseconds, and a pause on it.
    virtual std::uint64_t NowMs() = 0;
    virtual void SleepMs(int ms) = 0;
};

// The tree's real Apache and MySQL, the real port test and the steady clock.
class LiveStackServers : public StackServers {
public:
    explicit LiveStackServers(const InstallPaths& paths)
        : programFolder(paths.ProgramFolder()), apache(paths), mysql(paths) {}

    ServerPids FindServers() override;
    bool IsApacheRunning() override { return apache.IsRunning(); }
    bool IsMysqlRunning() override { return mysql.IsRunning(); }
    bool StartApache() override { return apache.Start(); }
    void StopApache() override { apache.Stop(); }
    void StartMysql() override { mysql.Start(); }
    bool StopMysql() override { return mysql.Stop(); }
    bool TemplatesChanged() override;
    wxString ReadOutput() override { return apache.ReadOutput() + mysql.ReadOutput(); }
    double ApacheCpu(const std::vector<long>& pids) override { return apache.CpuUse(pids); }
    double MysqlCpu(const std::vector<long>& pids) override { return mysql.CpuUse(pids); }
    bool IsPortFree(int port) override;
    wxString PortHolderLine(int port) override;
    int MysqlPort() override { return mysql.NextPort(); }
    std::shared_ptr<void> LockTree() override;
    std::uint64_t NowMs() override;
    void SleepMs(int ms) override;

    ApacheServer& Apache() { return apache; }
    MysqlServer& Mysql() { return mysql; }
    // On by default; off, each tick reads the whole process table (the bench compares both).
    void UseProcessCache(bool use) { useCache = use; }

private:
    wxString programFolder;
    ProcessCache processes;
    bool useCache = true;
    ApacheServer apache;
    MysqlServer mysql;
};
