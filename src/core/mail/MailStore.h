#pragma once

#include <wx/string.h>

#include <string>
#include <vector>

class InstallPaths;

// What a listing shows of one caught message.
struct MailSummary {
    wxString id;
    wxString date; // the Date field, else the time the message was caught
    wxString from;
    wxString to;
    wxString subject;
};

// The caught messages: one "<id>.eml" file each in the tree's mail folder, where the id is the
// catch time and a counter ("20261123-101500-1"), so ids sort by arrival. A message is written
// under a hidden scratch name and renamed, so a reader never sees half of one, and an existing
// message is never replaced.
class MailStore {
public:
    explicit MailStore(const wxString& folder) : folder(folder) {}
    static wxString FolderOf(const InstallPaths& paths);

    // Stores the bytes as a new message; false with error set when it cannot be written.
    bool Catch(const std::string& bytes, wxString& id, wxString& error) const;
    // Newest first. Only the head of each file is read.
    std::vector<MailSummary> List() const;
    bool Read(const wxString& id, std::string& raw) const;
    bool Remove(const wxString& id) const;
    // Removes every message; answers those that could not be removed, a line each naming the
    // file and the system's reason ("" when all were).
    wxString Clear() const;
    // The file of a message; "" for an id that is not one (a path, a hidden name).
    wxString PathOf(const wxString& id) const;

    // How many messages are newer than the message id ("": all of them). Reads names only.
    size_t CountNewerThan(const wxString& id) const;

    // Newer ids compare greater (the counter compared as a number).
    static bool IsNewer(const wxString& id, const wxString& than);

private:
    std::vector<wxString> Ids() const;

    wxString folder;
};
