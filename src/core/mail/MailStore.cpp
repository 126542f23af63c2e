#include "core/mail/MailStore.h"

#include "core/FileErrors.h"
#include "core/FolderListing.h"

#include "core/InstallPaths.h"
#include "core/mail/MailMessage.h"

#include <wx/datetime.h>
#include <wx/ffile.h>
#include <wx/filename.h>
#include <wx/log.h>
#include <wx/utils.h>

#include <algorithm>
#include <atomic>

namespace {

const wxString Extension = ".eml";
// Enough for the header block of any real message; a listing never reads a whole 20 MB message.
const size_t HeadBytes = 64 * 1024;

bool ReadBytes(const wxString& path, std::string& bytes, size_t limit) {
    wxFFile file(path, "rb");
    if (!file.IsOpened())
        return false;
    const wxFileOffset length = file.Length();
    if (length < 0)
        return false;
    bytes.resize(std::min(static_cast<size_t>(length), limit));
    return file.Read(bytes.data(), bytes.size()) == bytes.size();
}

bool WriteBytes(const wxString& path, const std::string& bytes) {
    wxFFile file(path, "wb");
    return file.IsOpened() && file.Write(bytes.data(), bytes.size()) == bytes.size() &&
           file.Flush() && file.Close();
}

unsigned long Counter(const wxString& id) {
    unsigned long counter = 0;
    id.AfterLast('-').ToULong(&counter);
    return counter;
}

// PHP's mail() writes no Date field: the id tells when the message was caught.
wxString CatchTime(const wxString& id) {
    wxDateTime time;
    wxString::const_iterator end;
    return time.ParseFormat(id.BeforeLast('-'), "%Y%m%d-%H%M%S", &end)
               ? time.Format("%Y-%m-%d %H:%M:%S")
               : wxString();
}

} // namespace

wxString MailStore::FolderOf(const InstallPaths& paths) {
    return paths.ProgramFolder() + "/mail";
}

bool MailStore::Catch(const std::string& bytes, wxString& id, wxString& error) const {
    static std::atomic<int> scratchCount{0};
    wxLogNull quiet; // the error says what failed
    if (!wxDirExists(folder) && !wxFileName::Mkdir(folder, wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL)) {
        error = FileErrors::CannotWrite(folder);
        return false;
    }
    const wxString scratch =
        wxString::Format("%s/.catch-%lu-%d", folder, wxGetProcessId(), scratchCount++);
    if (!WriteBytes(scratch, bytes)) {
        error = FileErrors::CannotWrite(folder);
        wxRemoveFile(scratch);
        return false;
    }
    const wxString stamp = wxDateTime::Now().Format("%Y%m%d-%H%M%S");
    for (int counter = 1; counter < 100000; ++counter) {
        id = wxString::Format("%s-%d", stamp, counter);
        const wxString target = PathOf(id);
        if (!wxFileExists(target) && wxRenameFile(scratch, target, false))
            return true;
    }
    error = FileErrors::CannotWrite(PathOf(id)); // the reason of the last rename
    wxRemoveFile(scratch);
    return false;
}

std::vector<wxString> MailStore::Ids() const {
    std::vector<wxString> ids;
    for (const wxString& name : ListFolder(folder, "*" + Extension, wxDIR_FILES))
        ids.push_back(name.Left(name.length() - Extension.length()));
    std::sort(ids.begin(), ids.end(),
              [](const wxString& a, const wxString& b) { return IsNewer(a, b); });
    return ids;
}

std::vector<MailSummary> MailStore::List() const {
    std::vector<MailSummary> summaries;
    for (const wxString& id : Ids()) {
        std::string head;
        if (!ReadBytes(PathOf(id), head, HeadBytes))
            continue; // removed meanwhile
        const MailMessage message = MailMessage::Parse(head, false);
        const wxString date = message.Header("Date");
        summaries.push_back({id, date.empty() ? CatchTime(id) : date, message.Header("From"),
                             message.Header("To"), message.Header("Subject")});
    }
    return summaries;
}

size_t MailStore::CountNewerThan(const wxString& id) const {
    const std::vector<wxString> ids = Ids();
    return static_cast<size_t>(std::count_if(ids.begin(), ids.end(), [&](const wxString& other) {
        return id.empty() || IsNewer(other, id);
    }));
}

bool MailStore::Read(const wxString& id, std::string& raw) const {
    const wxString path = PathOf(id);
    return !path.empty() && ReadBytes(path, raw, std::string::npos);
}

bool MailStore::Remove(const wxString& id) const {
    wxLogNull quiet; // the caller says what failed
    const wxString path = PathOf(id);
    return !path.empty() && wxFileExists(path) && wxRemoveFile(path);
}

wxString MailStore::Clear() const {
    wxString failures;
    for (const wxString& id : Ids())
        if (!Remove(id))
            failures += FileErrors::CannotRemove(PathOf(id)) + "\n";
    return failures;
}

wxString MailStore::PathOf(const wxString& id) const {
    if (id.empty() || id.StartsWith(".") || id.find_first_of("/\\") != wxString::npos)
        return wxString();
    return folder + "/" + id + Extension;
}

bool MailStore::IsNewer(const wxString& id, const wxString& than) {
    const wxString stamp = id.BeforeLast('-'), otherStamp = than.BeforeLast('-');
    if (stamp != otherStamp)
        return stamp > otherStamp;
    return Counter(id) > Counter(than);
}
