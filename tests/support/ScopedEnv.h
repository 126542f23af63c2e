#pragma once

#include <wx/string.h>
#include <wx/utils.h>

// Sets (or, given nullptr, removes) an environment variable for one scope, then puts back what
// was there.
class ScopedEnv {
public:
    ScopedEnv(const wxString& name, const wxString* value) : name(name) {
        had = wxGetEnv(name, &previous);
        value ? wxSetEnv(name, *value) : wxUnsetEnv(name);
    }
    ScopedEnv(const wxString& name, const wxString& value) : ScopedEnv(name, &value) {}
    ~ScopedEnv() { had ? wxSetEnv(name, previous) : wxUnsetEnv(name); }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    wxString name;
    wxString previous;
    bool had = false;
};
