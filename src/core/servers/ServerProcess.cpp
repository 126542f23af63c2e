#include "core/servers/ServerProcess.h"

#include "core/lang/LangTable.h"

ServerProcess::ServerProcess(const wxString& commandLine, const wxString& workingFolder) {
    launch.commandLine = commandLine;
    launch.workingFolder = workingFolder;
}

void ServerProcess::SetVariable(const wxString& name, const wxString& value) {
    launch.environment.emplace_back(name, value);
}

bool ServerProcess::Run() {
    child = Platform::Get().StartHidden(launch);
    return child != nullptr;
}

bool ServerProcess::IsActive() {
    return child && child->IsActive();
}

wxString ServerProcess::ReadOutput() {
    return child ? child->ReadOutput() : wxString();
}

long ServerProcess::Pid() const {
    return child ? child->Pid() : 0;
}

bool KeepIfActive(std::unique_ptr<ServerProcess>& record) {
    if (record && record->IsActive())
        return true;
    record.reset();
    return false;
}

wxString RunOrForget(std::unique_ptr<ServerProcess>& record, const wxString& program) {
    if (record->Run())
        return wxString();
    const wxString reason = Platform::LastFailureReason();
    record.reset();
    return wxString::Format(GetLangText("SERVER_CANNOT_RUN"), program, reason) + "\n";
}
