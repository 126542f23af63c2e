#include "core/servers/CpuMeter.h"

#include <algorithm>
#include <chrono>

double CpuMeter::Measure(const std::vector<long>& pids) {
    const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
    double total = 0;
    for (long pid : pids) {
        ProcessorTimes times;
        if (Platform::Get().ReadProcessorTimes(pid, times))
            total += Sample(pid, times, static_cast<std::uint64_t>(now.count()));
    }
    Forget(pids);
    return total;
}

double CpuMeter::Sample(long pid, const ProcessorTimes& times, std::uint64_t nowMs) {
    auto found = previous.find(pid);
    if (found == previous.end()) {
        previous[pid] = Previous{times, nowMs, 0};
        return 0;
    }
    Previous& last = found->second;
    if (nowMs - last.atMs < MinimumIntervalMs)
        return last.value;
    double value = 0;
    // A pid used again by another process starts from a smaller process time.
    if (times.machine > last.times.machine && times.process >= last.times.process)
        value = 100.0 * static_cast<double>(times.process - last.times.process) /
                static_cast<double>(times.machine - last.times.machine);
    last = Previous{times, nowMs, value};
    return value;
}

void CpuMeter::Forget(const std::vector<long>& alive) {
    for (auto it = previous.begin(); it != previous.end();) {
        if (std::find(alive.begin(), alive.end(), it->first) == alive.end())
            it = previous.erase(it);
        else
            ++it;
    }
}
