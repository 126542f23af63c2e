#pragma once

#include "platform/Platform.h"

#include <wx/string.h>

#include <memory>

// A process that the panel's lookup takes for a server: a copy of sleep installed in a tree under
// the server's name (e.g. "apache/bin/httpd", "mysql/bin/mysqld"), so that it lives in the tree's
// process scope. By default a copy of sleep; a copy of another program (e.g. a shell busy in a
// loop, to use processor time) can be given with its arguments. The destructor kills it by pid if
// it still runs.
class FakeServer {
public:
    FakeServer(const wxString& root, const wxString& relativePath,
               const wxString& program = "/bin/sleep", const wxString& arguments = "300");
    ~FakeServer();

    long Pid() const { return child->Pid(); }
    // Asks the system; reaps the process once it has ended.
    bool IsActive() { return child->IsActive(); }

private:
    std::unique_ptr<ChildProcess> child;
};
