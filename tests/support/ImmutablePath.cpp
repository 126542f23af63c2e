#include "support/ImmutablePath.h"

#include "support/CommandRunner.h"

ImmutablePath::ImmutablePath(const wxString& path)
    : path(path), made(RunCommand({"chattr", "+i", path}).exitCode == 0) {}

ImmutablePath::~ImmutablePath() {
    if (made)
        RunCommand({"chattr", "-i", path});
}
