#include "core/TextFiles.h"

#include "platform/Platform.h"

#include <wx/convauto.h>
#include <wx/ffile.h>
#include <wx/filefn.h>
#include <wx/wxcrt.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace TextFiles {

void InitEncoding() {
    Platform::Get().UseUtf8Texts();
    wxConvAuto::SetFallbackEncoding(wxFONTENCODING_CP1252);
}

namespace {

bool IsCharacter(wxUint32 code) {
    return code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

// False when a non-character is met and invalid says Reject.
bool CheckCharacters(wxString& text, InvalidCharacters invalid) {
    if (sizeof(wchar_t) < 4)
        return true; // UTF-16 strings hold surrogates as the halves of real characters
    const wchar_t* characters = text.wc_str();
    for (size_t i = 0; i < text.length(); ++i)
        if (!IsCharacter(static_cast<wxUint32>(characters[i]))) {
            if (invalid == InvalidCharacters::Reject)
                return false;
            text[i] = wxUniChar(0xFFFD);
            characters = text.wc_str();
        }
    return true;
}

} // namespace

bool Read(const wxString& path, wxString& text, InvalidCharacters invalid) {
    wxFFile file;
    if (!wxFileExists(path) || !file.Open(path, "rb"))
        return false;
    std::string bytes(static_cast<size_t>(std::max<wxFileOffset>(file.Length(), 0)), '\0');
    if (file.Read(bytes.data(), bytes.size()) != bytes.size())
        return false;
    if (bytes.empty()) {
        text.clear();
        return true;
    }
    // Bytes that no candidate encoding can decode (0x81 is not CP1252 either) fail the whole file;
    // the decoder alone would hand back an empty text as if the file were empty.
    if (wxConvAuto().ToWChar(nullptr, 0, bytes.data(), bytes.size()) == wxCONV_FAILED)
        return false;
    wxString decoded(bytes.data(), wxConvAuto(), bytes.size());
    if (!CheckCharacters(decoded, invalid))
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
    std::FILE* file = wxFopen(path, "wb");
    if (!file)
        return false;
    bool written = std::fwrite(data, 1, size, file) == size;
    written = std::fflush(file) == 0 && written;
    return std::fclose(file) == 0 && written;
}

bool ReplaceWith(const wxString& scratch, const wxString& path) {
    if (Platform::Get().ReplaceFile(scratch, path))
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
