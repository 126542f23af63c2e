#pragma once

#include <wx/string.h>

#include <string>

// Whole-file text reading and writing shared by every editor of the tree's files.
// Reading detects the encoding (byte-order mark, else UTF-8, else CP1252, the encoding Windows
// users' files come in); writing produces UTF-8 without byte-order mark through the platform's
// file replacement, so the target is never seen half-written, keeps its permission bits and, when
// it is a symbolic link, stays one.
namespace TextFiles {

// Makes file names UTF-8 whatever the locale and CP1252 the fallback of automatic detection;
// call once at start-up.
void InitEncoding();

// What Read does with decoded values that are no characters (a damaged UTF-32 or UTF-8 file can
// produce surrogates or values past U+10FFFF, which could not be written back): refuse the file,
// or put U+FFFD in their place where the reader's model is lossy anyway.
enum class InvalidCharacters { Reject, Replace };

bool Read(const wxString& path, wxString& text,
          InvalidCharacters invalid = InvalidCharacters::Reject);
// The whole file as it lies on disk; false when it is missing or unreadable.
bool ReadBytes(const wxString& path, std::string& bytes);
// True when every byte is below 0x80, which no encoding reads otherwise (nor has a byte-order
// mark).
bool IsPlainAscii(const std::string& bytes);
// The text of plain ASCII bytes, NUL bytes included (wxString::FromAscii stops at the first NUL).
wxString FromAsciiBytes(const char* start, size_t length);
// Decodes the bytes of a file as Read does.
bool Decode(const std::string& bytes, wxString& text,
            InvalidCharacters invalid = InvalidCharacters::Reject);
// On failure the target is left untouched.
bool WriteAtomically(const wxString& path, const wxString& text);

} // namespace TextFiles
