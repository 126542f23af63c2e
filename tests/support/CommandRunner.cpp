#include "support/CommandRunner.h"

#include <wx/process.h>
#include <wx/sstream.h>
#include <wx/utils.h>

namespace {

wxString Drain(wxInputStream* stream) {
    if (!stream)
        return wxString();
    wxStringOutputStream text(nullptr, wxConvUTF8);
    stream->Read(text);
    return text.GetString();
}

} // namespace

CommandResult RunCommand(const std::vector<wxString>& argv) {
    std::vector<wxScopedCharBuffer> buffers;
    std::vector<const char*> pointers;
    for (const wxString& arg : argv)
        buffers.push_back(arg.utf8_str());
    for (const auto& buffer : buffers)
        pointers.push_back(buffer.data());
    pointers.push_back(nullptr);

    wxProcess process;
    process.Redirect();
    CommandResult result;
    result.exitCode = static_cast<int>(wxExecute(pointers.data(), wxEXEC_SYNC, &process));
    result.out = Drain(process.GetInputStream());
    result.err = Drain(process.GetErrorStream());
    // A Windows console program's "\n" reaches the pipe as CR LF; the tests compare lines.
    result.out.Replace("\r\n", "\n");
    result.err.Replace("\r\n", "\n");
    return result;
}

CommandResult RunShell(const wxString& commandLine) {
    return RunCommand({"/bin/sh", "-c", commandLine});
}
