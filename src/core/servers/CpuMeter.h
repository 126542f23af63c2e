#pragma once

#include "platform/Platform.h"

#include <cstdint>
#include <map>
#include <vector>

// Processor use of a set of processes as a share of the whole machine, in percent. Each process
// keeps its previous sample; a sample younger than 251 ms is not replaced and its last value is
// returned again, so a burst of calls does not divide by tiny intervals.
class CpuMeter {
public:
    // The processes' summed use since their previous samples; 0 for an empty set.
    double Measure(const std::vector<long>& pids);
    // One process at time nowMs given its current times (the clock and times are passed in).
    double Sample(long pid, const ProcessorTimes& times, std::uint64_t nowMs);

    static constexpr std::uint64_t MinimumIntervalMs = 251;

private:
    struct Previous {
        ProcessorTimes times;
        std::uint64_t atMs = 0;
        double value = 0;
    };
    void Forget(const std::vector<long>& alive);

    std::map<long, Previous> previous;
};
