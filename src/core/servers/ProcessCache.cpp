#include "core/servers/ProcessCache.h"

#include <algorithm>

namespace {

class PlatformSource : public ProcessCache::Source {
public:
    std::uint64_t Version() override { return Platform::Get().ProcessTableVersion(); }
    std::vector<ProcessListing> List() override { return Platform::Get().ListProcesses(); }
    bool ReadFacts(long pid, ProcessFacts& facts) override {
        return Platform::Get().ReadProcessFacts(pid, facts);
    }
    bool LivesIn(long pid, const wxString& folder) override {
        return Platform::Get().ProcessLivesIn(pid, folder);
    }
};

PlatformSource& ThePlatform() {
    static PlatformSource source;
    return source;
}

} // namespace

ProcessCache::ProcessCache() : ProcessCache(ThePlatform()) {}

std::vector<std::vector<long>> ProcessCache::FindEach(const std::vector<wxString>& names,
                                                      const wxString& folder) {
    ++lookup;
    ReadListing();
    RecheckInTurn();
    std::vector<wxString> wanted;
    for (const wxString& name : names)
        wanted.push_back(name.Lower());
    const auto indexOf = [&wanted](const Known& entry) -> std::size_t {
        return std::find(wanted.begin(), wanted.end(), entry.name) - wanted.begin();
    };
    std::vector<std::vector<long>> found(names.size());
    for (auto& [pid, entry] : known) {
        if (indexOf(entry) == wanted.size())
            continue;
        Refresh(pid, entry); // a process of a wanted name is always seen as it is now
        const std::size_t index = indexOf(entry);
        if (index < wanted.size() && entry.live && LivesIn(pid, entry, folder))
            found[index].push_back(pid);
    }
    return found;
}

// New processes, changed listings and young processes are read; vanished ones forgotten.
void ProcessCache::ReadListing() {
    const std::uint64_t version = source.Version();
    if (version != 0 && version == listedVersion) {
        for (auto& [pid, entry] : known)
            if (entry.young)
                Refresh(pid, entry);
        return;
    }
    listedVersion = version;
    for (const ProcessListing& listed : source.List()) {
        const auto [at, added] = known.try_emplace(listed.pid);
        Known& entry = at->second;
        entry.listedIn = lookup;
        if (added || entry.token != listed.token || entry.young) {
            entry.token = listed.token;
            Refresh(listed.pid, entry);
        }
    }
    for (auto at = known.begin(); at != known.end();)
        at = at->second.listedIn == lookup ? std::next(at) : known.erase(at);
}

void ProcessCache::Refresh(long pid, Known& entry) {
    if (entry.readIn == lookup)
        return;
    entry.readIn = lookup;
    ProcessFacts facts;
    if (!source.ReadFacts(pid, facts)) {
        entry.name.clear();
        entry.live = entry.young = false;
        return;
    }
    const wxString name = facts.name.Lower();
    if (facts.startTime != entry.startTime || name != entry.name)
        entry.placeKnown = false; // another process, or another program
    entry.startTime = facts.startTime;
    entry.name = name;
    entry.live = facts.live;
    entry.young = facts.ageMs < YOUNG_MS;
}

// The next few processes after the last one re-checked, in pid order, wrapping round.
void ProcessCache::RecheckInTurn() {
    const std::size_t count = std::min(RECHECKS_PER_LOOKUP, known.size());
    auto at = known.upper_bound(turn);
    for (std::size_t i = 0; i < count; ++i, ++at) {
        if (at == known.end())
            at = known.begin();
        Refresh(at->first, at->second);
        turn = at->first;
    }
}

bool ProcessCache::LivesIn(long pid, Known& entry, const wxString& folder) {
    if (!entry.placeKnown || entry.placeFolder != folder) {
        entry.inFolder = source.LivesIn(pid, folder);
        entry.placeFolder = folder;
        entry.placeKnown = true;
    }
    return entry.inFolder;
}
