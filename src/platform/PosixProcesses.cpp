// Process, processor-time and socket services of PosixPlatform (being written).
#include "platform/PosixPlatform.h"

std::unique_ptr<ChildProcess> PosixPlatform::StartHidden(const ChildSpec&) {
    return nullptr;
}
std::vector<long> PosixPlatform::FindProcessesByName(const wxString&) {
    return {};
}
void PosixPlatform::KillProcess(long) {}
bool PosixPlatform::ReadProcessorTimes(long, ProcessorTimes&) {
    return false;
}
bool PosixPlatform::IsLocalPortTaken(int, int) {
    return false;
}
wxString PosixPlatform::DescribePortHolder(int) {
    return wxString();
}
