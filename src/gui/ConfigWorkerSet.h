#pragma once

#include "gui/ConfigWorker.h"

#include <map>
#include <memory>

// The workers a dialog has started and not yet joined, by job number. A completion hands its job
// number to Finish, which joins that worker: it has queued its last event, so the join is a matter
// of its return. A worker that is stopped is joined at once and its later events are unknown
// jobs. The destructor stops and joins whatever still runs.
class ConfigWorkerSet {
public:
    ConfigWorkerSet() = default;
    ConfigWorkerSet(const ConfigWorkerSet&) = delete;
    ConfigWorkerSet& operator=(const ConfigWorkerSet&) = delete;
    ~ConfigWorkerSet() { StopAll(); }

    // Runs worker under a new job number; false when the thread cannot start.
    bool Start(std::unique_ptr<ConfigWorker> worker);
    bool Knows(int job) const { return workers.count(job) != 0; }
    // Joins and forgets the worker of job, if known.
    void Finish(int job);
    // Asks every worker to stop, then joins and forgets them all.
    void StopAll();
    bool IsEmpty() const { return workers.empty(); }

private:
    std::map<int, std::unique_ptr<ConfigWorker>> workers;
    int lastJob = 0;
};
