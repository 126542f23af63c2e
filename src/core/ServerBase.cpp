#include "core/ServerBase.h"

#include "core/ProcessLookup.h"

bool ServerBase::IsRunning() const {
    return ProcessLookup::IsRunning(processName);
}

double ServerBase::CpuUse() {
    return CpuUse(ProcessLookup::Find(processName));
}
