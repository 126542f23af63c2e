#include "core/TextFiles.h"

#include "platform/Platform.h"

#include <wx/convauto.h>
#include <wx/ffile.h>
#include <wx/filefn.h>
#include <wx/wxcrt.h>

#include <algorithm>

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

bool HasByteOrderMark(const std::string& bytes) {
    static const char* const marks[] = {"\xef\xbb\xbf", "\xff\xfe", "\xfe\xff"};
    return std::any_of(std::begin(marks), std::end(marks),
                       [&](const char* mark) { return bytes.rfind(mark, 0) == 0; });
}

bool DecodeDetected(const std::string& bytes, wxString& text) {
    // Bytes that no candidate encoding can decode (0x81 is not CP1252 either) fail the whole file;
    // the decoder alone would hand back an empty text as if the file were empty.
    if (wxConvAuto().ToWChar(nullptr, 0, bytes.data(), bytes.size()) == wxCONV_FAILED)
        return false;
    wxString decoded(bytes.data(), wxConvAuto(), bytes.size());
    text.swap(decoded);
    return true;
}

} // namespace

bool ReadBytes(const wxString& path, std::string& bytes) {
    wxFFile file;
    if (!wxFileExists(path) || !file.Open(path, "rb"))
        return false;
    bytes.assign(static_cast<size_t>(std::max<wxFileOffset>(file.Length(), 0)), '\0');
    return file.Read(bytes.data(), bytes.size()) == bytes.size();
}

bool IsPlainAscii(const std::string& bytes) {
    return std::all_of(bytes.begin(), bytes.end(),
                       [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

wxString FromAsciiBytes(const char* start, size_t length) {
    return wxString(std::wstring(start, start + length));
}

// Most files are plain ASCII or UTF-8 and are decoded in one pass; automatic detection, which
// converts twice, is kept for byte-order marks and the CP1252 fallback. Texts are swapped, never
// assigned: wxString has no move, and a php.ini is megabytes.
bool Decode(const std::string& bytes, wxString& text, InvalidCharacters invalid) {
    const bool marked = HasByteOrderMark(bytes);
    if (IsPlainAscii(bytes)) {
        wxString ascii(FromAsciiBytes(bytes.data(), bytes.size()));
        text.swap(ascii);
        return true;
    }
    wxString decoded(marked ? wxString() : wxString::FromUTF8(bytes.data(), bytes.size()));
    if (decoded.empty() && !bytes.empty() && !DecodeDetected(bytes, decoded))
        return false;
    if (!CheckCharacters(decoded, invalid))
        return false;
    text.swap(decoded);
    return true;
}

bool Read(const wxString& path, wxString& text, InvalidCharacters invalid) {
    std::string bytes;
    return ReadBytes(path, bytes) && Decode(bytes, text, invalid);
}

bool WriteAtomically(const wxString& path, const wxString& text) {
    const wxScopedCharBuffer utf8 = text.utf8_str();
    if (utf8.length() == 0 && !text.empty())
        return false; // not encodable: never replace the target with nothing
    return Platform::Get().SaveFileAtomically(path, std::string(utf8.data(), utf8.length()));
}

} // namespace TextFiles
