#include "gui/ConfigWorkerSet.h"

bool ConfigWorkerSet::Start(std::unique_ptr<ConfigWorker> worker) {
    worker->SetJob(++lastJob);
    if (worker->Run() != wxTHREAD_NO_ERROR)
        return false;
    workers.emplace(lastJob, std::move(worker));
    return true;
}

void ConfigWorkerSet::Finish(int job) {
    const auto found = workers.find(job);
    if (found == workers.end())
        return;
    found->second->Wait(wxTHREAD_WAIT_BLOCK);
    workers.erase(found);
}

void ConfigWorkerSet::StopAll() {
    for (auto& entry : workers)
        entry.second->RequestStop();
    for (auto& entry : workers)
        entry.second->Wait(wxTHREAD_WAIT_BLOCK);
    workers.clear();
}
