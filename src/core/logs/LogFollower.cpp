#include "core/logs/LogFollower.h"

#include <algorithm>

namespace {

// As many bytes as it takes to tell two logs apart: the first line usually carries a time.
const size_t HeadSize = 64;

wxString DecodeLine(const std::string& bytes) {
    wxString line = wxString::FromUTF8(bytes.data(), bytes.size());
    return line.empty() && !bytes.empty() ? wxString(bytes.data(), wxConvISO8859_1, bytes.size())
                                          : line;
}

wxFileOffset Length(const wxString& path) {
    wxFile file;
    return wxFile::Exists(path) && file.Open(path) ? file.Length() : 0;
}

} // namespace

std::vector<wxString> LogFollower::Open() {
    pending.clear();
    head = Head();
    const wxFileOffset length = Length(path);
    const wxFileOffset start =
        std::max<wxFileOffset>(0, length - static_cast<wxFileOffset>(tailBytes));
    offset = start;
    std::string bytes;
    if (!ReadFrom(start, bytes))
        return {};
    if (start > 0) {
        const size_t firstEnd = bytes.find('\n');
        bytes.erase(0, firstEnd == std::string::npos ? bytes.size() : firstEnd + 1);
    }
    return TakeLines(std::move(bytes));
}

std::vector<wxString> LogFollower::Poll() {
    const wxFileOffset length = Length(path);
    restarted = WasReplaced(length);
    if (restarted)
        return Open();
    std::string bytes;
    if (length == offset || !ReadFrom(offset, bytes))
        return {};
    return TakeLines(std::move(bytes));
}

bool LogFollower::WasReplaced(wxFileOffset length) {
    return length < offset || Head().compare(0, head.size(), head) != 0;
}

std::string LogFollower::Head() {
    std::string bytes;
    wxFile file;
    if (!wxFile::Exists(path) || !file.Open(path))
        return bytes;
    bytes.resize(HeadSize);
    const ssize_t got = file.Read(bytes.data(), HeadSize);
    bytes.resize(got > 0 ? static_cast<size_t>(got) : 0);
    return bytes;
}

bool LogFollower::ReadFrom(wxFileOffset start, std::string& bytes) {
    wxFile file;
    if (!wxFile::Exists(path) || !file.Open(path) || file.Seek(start) == wxInvalidOffset)
        return false;
    const wxFileOffset length = file.Length();
    if (length <= start)
        return true;
    bytes.resize(static_cast<size_t>(length - start));
    const ssize_t got = file.Read(bytes.data(), bytes.size());
    bytes.resize(got > 0 ? static_cast<size_t>(got) : 0);
    offset = start + static_cast<wxFileOffset>(bytes.size());
    return true;
}

std::vector<wxString> LogFollower::TakeLines(std::string bytes) {
    std::vector<wxString> lines;
    pending += bytes;
    size_t start = 0;
    for (size_t end; (end = pending.find('\n', start)) != std::string::npos; start = end + 1) {
        size_t stop = end;
        if (stop > start && pending[stop - 1] == '\r')
            --stop;
        lines.push_back(DecodeLine(pending.substr(start, stop - start)));
    }
    pending.erase(0, start);
    return lines;
}
