#pragma once

#include <wx/string.h>

#include <cstring>
#include <string>

// Puts path, as UTF-8 bytes, into the path of a Unix socket address (sockaddr_un, from the
// system's own header; the caller sets its family). False when the path is empty or too long.
template <typename Address> bool FillUnixSocketPath(const wxString& path, Address& address) {
    const std::string bytes = path.utf8_string();
    if (bytes.empty() || bytes.size() >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, bytes.c_str(), bytes.size() + 1);
    return true;
}
