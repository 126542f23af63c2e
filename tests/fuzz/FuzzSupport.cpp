#include "FuzzSupport.h"

#include "core/TextFiles.h"

#include <wx/filename.h>
#include <wx/init.h>
#include <wx/log.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace {

void AbortOnAssert(const wxString& file, int line, const wxString& function,
                   const wxString& condition, const wxString& message) {
    std::fprintf(stderr, "wx assertion %s:%d in %s: %s %s\n", file.utf8_str().data(), line,
                 function.utf8_str().data(), condition.utf8_str().data(),
                 message.utf8_str().data());
    std::abort();
}

void RemoveScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(FuzzSupport::ScratchFolder().utf8_string(), ignored);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    if (!wxInitialize(*argc, *argv))
        FuzzSupport::Fail("wxWidgets did not initialise");
    wxSetAssertHandler(AbortOnAssert);
    wxLog::SetActiveTarget(new wxLogStderr);
    TextFiles::InitEncoding();
    std::atexit(RemoveScratchFolder);
    return 0;
}

namespace FuzzSupport {

const wxString& ScratchFolder() {
    // Never destroyed: the exit handler that removes the folder runs after static destructors.
    static const wxString* const folder = [] {
        std::string pattern = (wxFileName::GetTempDir() + "/kovix-fuzz-XXXXXX").utf8_string();
        if (!mkdtemp(pattern.data()))
            Fail("cannot create a scratch folder");
        return new wxString(wxString::FromUTF8(pattern));
    }();
    return *folder;
}

void WriteFile(const wxString& path, const uint8_t* data, size_t size) {
    std::ofstream out(path.fn_str(), std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    if (!out)
        Fail("cannot write the input file");
}

std::string ReadFile(const wxString& path) {
    std::ifstream in(path.fn_str(), std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

void Fail(const char* message) {
    std::fprintf(stderr, "%s\n", message);
    std::abort();
}

} // namespace FuzzSupport
