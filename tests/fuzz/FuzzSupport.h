#pragma once

#include <wx/string.h>

#include <cstddef>
#include <cstdint>
#include <string>

// What every fuzz target shares: wxWidgets set up once as for kovixctl (wx assertions abort, so
// the fuzzer reports them), a scratch folder of the process, and whole-file byte helpers.
namespace FuzzSupport {

// A folder of this process, removed at exit.
const wxString& ScratchFolder();

void WriteFile(const wxString& path, const uint8_t* data, size_t size);
std::string ReadFile(const wxString& path);

// Stops the run with the message; the fuzzer keeps the input that led here.
[[noreturn]] void Fail(const char* message);

} // namespace FuzzSupport
