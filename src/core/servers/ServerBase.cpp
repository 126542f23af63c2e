#include "core/servers/ServerBase.h"

#include "core/servers/ProcessLookup.h"

bool ServerBase::IsRunning() const {
    return ProcessLookup::IsRunning(processName, paths.ProgramFolder());
}

double ServerBase::CpuUse() {
    return CpuUse(ProcessLookup::Find(processName, paths.ProgramFolder()));
}
