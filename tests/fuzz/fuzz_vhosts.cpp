// Any bytes as the Apache template: reading it, writing the hosts back and reading the result
// must give the same hosts, and the writer must append the blocks exactly as it lays them out.
#include "FuzzSupport.h"
#include "apache/VirtualHostFile.h"

#include <string>

namespace {

// The writer appends the blocks right after the template's last copied line when the last line
// it read was an empty one inside an unclosed block; the first opening tag then shares a line
// with that copied line. If the copied line holds "<VirtualHost" the address read back takes it
// in, the rest of the model stays the same.
bool SameHostsGluedAfterLastLine(const VirtualHostFile& first, const VirtualHostFile& second) {
    if (second.hosts.size() != first.hosts.size() ||
        !second.hosts[0].address.EndsWith("<VirtualHost " + first.hosts[0].address))
        return false;
    VirtualHostFile expected = first;
    expected.hosts[0].address = second.hosts[0].address;
    return expected.hosts == second.hosts;
}

void CheckRoundTrip(const VirtualHostFile& first) {
    if (!WriteVirtualHosts(first))
        FuzzSupport::Fail("a template that was read could not be written");
    const std::string written = FuzzSupport::ReadFile(first.path);
    wxString blocks;
    for (const VirtualHostRecord& host : first.hosts)
        WriteVirtualHostBlock(host, blocks);
    const std::string tail = blocks.utf8_string();
    if (written.size() < tail.size() ||
        written.compare(written.size() - tail.size(), tail.size(), tail) != 0)
        FuzzSupport::Fail("the blocks are not at the end of the template");
    const size_t start = written.size() - tail.size();
    const bool glued = !first.hosts.empty() && start > 0 && written[start - 1] != '\n';

    VirtualHostFile second;
    second.path = first.path;
    if (!ReadVirtualHosts(second))
        FuzzSupport::Fail("the written template cannot be read");
    if (second.hosts != first.hosts && !(glued && SameHostsGluedAfterLastLine(first, second)))
        FuzzSupport::Fail("the hosts read back differ from the hosts written");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const wxString path = FuzzSupport::ScratchFolder() + "/httpd_source.conf";
    FuzzSupport::WriteFile(path, data, size);
    VirtualHostFile first;
    first.path = path;
    if (ReadVirtualHosts(first))
        CheckRoundTrip(first);
    return 0;
}
