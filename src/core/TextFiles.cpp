#include "core/TextFiles.h"

#include <wx/convauto.h>
#include <wx/ffile.h>
#include <wx/filefn.h>

#include <cstdio>

namespace TextFiles {

void InitEncoding() {
    wxConvAuto::SetFallbackEncoding(wxFONTENCODING_CP1252);
}

namespace {

// A UTF-32 file may decode to values that are no characters at all; such text could not be
// written back, so the file counts as unreadable.
bool IsWritableText(const wxString& text) {
    for (wxUniChar c : text)
        if (c.GetValue() > 0x10FFFF || (c.GetValue() >= 0xD800 && c.GetValue() <= 0xDFFF))
            return false;
    return true;
}

} // namespace

bool Read(const wxString& path, wxString& text) {
    wxFFile file;
    if (!wxFileExists(path) || !file.Open(path, "rb"))
        return false;
    wxString decoded;
    if (!file.ReadAll(&decoded, wxConvAuto()) || !IsWritableText(decoded))
        return false;
    text = decoded;
    return true;
}

namespace {

void RemoveScratch(const wxString& scratch) {
    if (wxFileExists(scratch))
        wxRemoveFile(scratch);
}

bool WriteBytes(const wxString& path, const void* data, size_t size) {
    std::FILE* file = std::fopen(path.fn_str(), "wb");
    if (!file)
        return false;
    bool written = std::fwrite(data, 1, size, file) == size;
    written = std::fflush(file) == 0 && written;
    return std::fclose(file) == 0 && written;
}

bool ReplaceWith(const wxString& scratch, const wxString& path) {
    // rename(2) replaces the target atomically; the old file stays until the new one is whole.
    if (std::rename(scratch.fn_str(), path.fn_str()) == 0)
        return true;
    RemoveScratch(scratch);
    return false;
}

} // namespace

bool WriteAtomically(const wxString& path, const wxString& text, const wxString& scratchPath) {
    const wxString scratch = scratchPath.empty() ? path + ".temp" : scratchPath;
    const wxScopedCharBuffer utf8 = text.utf8_str();
    if (utf8.length() == 0 && !text.empty())
        return false; // not encodable: never replace the target with nothing
    if (!WriteBytes(scratch, utf8.data(), utf8.length())) {
        RemoveScratch(scratch);
        return false;
    }
    return ReplaceWith(scratch, path);
}

bool CopyAtomically(const wxString& from, const wxString& to) {
    const wxString scratch = to + ".temp";
    if (!wxFileExists(from))
        return false;
    if (!wxCopyFile(from, scratch, true)) {
        RemoveScratch(scratch);
        return false;
    }
    return ReplaceWith(scratch, to);
}

} // namespace TextFiles
