#pragma once

#include "core/ConfigGenerator.h"
#include "core/servers/ServerBase.h"

#include <memory>

// The Apache server of the tree: starts it in the foreground as a hidden child from freshly
// generated configuration files, stops it by killing every "httpd", and tells whether it runs
// (by process name), its processor share, what it wrote, and whether the Apache or PHP template
// changed since the last test. One object lives as long as the panel.
class ApacheServer : public ServerBase {
public:
    explicit ApacheServer(const InstallPaths& paths);

    // Generates the configuration and starts Apache, unless the child of the last start is still
    // active (then it does nothing). A configuration that could not be generated, or a program
    // that cannot run, starts nothing; ReadOutput says why. False only when a start is already
    // in progress.
    bool Start();
    void Stop();

    // What the last start could not generate or run, or had to leave out of the configuration,
    // then what its child has written, since the last call, with the template lines of its syntax
    // errors; "" when there is none.
    wxString ReadOutput();

    // File watch of httpd_source.conf and of the selected version's php_source.ini.
    bool HasSourceChanged() { return apacheSource.HasChanged(); }
    bool HasPhpSourceChanged() { return phpSource.HasChanged(); }

    // The command line of a start: executable unquoted, configuration path quoted.
    wxString CommandLine() const;

private:
    bool starting = false;
    wxString note;
    TemplateWatch apacheSource;
    TemplateWatch phpSource;
};
