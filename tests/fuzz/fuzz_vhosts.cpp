// Any bytes as the Apache template: reading it, writing the hosts back and reading the result
// must give the same hosts, and the writer must append the blocks exactly as it lays them out.
#include "FuzzSupport.h"
#include "core/apache/VirtualHostFile.h"

#include <string>
#include <vector>

namespace {

// The writer appends the blocks right after the template's last copied line when the last line
// it read was an empty one inside an unclosed block; the first opening tag then shares a line
// with that copied line. If the copied line holds "<VirtualHost" the address read back takes it
// in, the rest of the model stays the same.
bool SameHostsGluedAfterLastLine(const VirtualHostFile& first, const VirtualHostFile& second) {
    if (second.hosts.size() != first.hosts.size() ||
        !second.hosts[0].address.EndsWith("<VirtualHost " + first.hosts[0].address))
        return false;
    std::vector<VirtualHostRecord> expected = first.hosts;
    expected[0].address = second.hosts[0].address;
    return expected == second.hosts;
}

void CheckRoundTrip(const VirtualHostFile& first, VirtualHostFile& second) {
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

    second.hosts.clear();
    if (!ReadVirtualHosts(second))
        FuzzSupport::Fail("the written template cannot be read");
    if (second.hosts != first.hosts && !(glued && SameHostsGluedAfterLastLine(first, second)))
        FuzzSupport::Fail("the hosts read back differ from the hosts written");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // Built once: a file's catalogue costs more to fill than a small template costs to read.
    static VirtualHostFile first;
    static VirtualHostFile second;
    if (first.path.empty())
        first.path = second.path = FuzzSupport::ScratchFolder() + "/httpd_source.conf";
    FuzzSupport::WriteFile(first.path, data, size);
    first.hosts.clear();
    if (ReadVirtualHosts(first))
        CheckRoundTrip(first, second);
    return 0;
}
