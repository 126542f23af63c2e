#pragma once

#include "core/AppSettings.h"
#include "core/InstallPaths.h"

// The installation paths on a private copy of the settings, for a worker thread: it then reads
// nothing that the GUI thread owns. Taken on the GUI thread before the worker starts.
class PathsSnapshot {
public:
    explicit PathsSnapshot(const InstallPaths& paths)
        : settings(paths.Settings()), paths(paths.ProgramFolder(), settings) {}
    PathsSnapshot(const PathsSnapshot&) = delete;
    PathsSnapshot& operator=(const PathsSnapshot&) = delete;

    const InstallPaths& Get() const { return paths; }

private:
    AppSettings settings;
    InstallPaths paths;
};
