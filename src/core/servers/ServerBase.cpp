#include "core/servers/ServerBase.h"

#include "core/servers/ProcessLookup.h"

bool ServerBase::IsRunning() const {
    return ProcessLookup::IsRunning(processName);
}

double ServerBase::CpuUse() {
    return CpuUse(ProcessLookup::Find(processName));
}
