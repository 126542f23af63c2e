#pragma once

#include "platform/Platform.h"

#include <cstdint>
#include <map>
#include <vector>

// What the status tick knows of the machine's processes, so that a tick among a thousand other
// processes reads little more than the process table's listing, and not even that while no
// process has got a pid since the last listing (a vanished one is forgotten at the next listing;
// until then, it is read only if it had a wanted name, and found gone). A process is its pid and
// start time: an entry whose listing token changed has its facts read again, and a pid that comes
// back with another start time is another process (its name and folder are read anew). A process
// that executes another program keeps both, so facts are also read on every lookup while a process
// is young (a child runs its program right after it starts), for a few processes of each lookup in
// turn (a late exec is seen within a full round), and for every process of a wanted name (which
// also notices a zombie). Whether a process lives in the folder is asked once per process and
// program. Not thread-safe: one owner asks.
class ProcessCache {
public:
    // Where the facts come from: the platform, or a fake in tests.
    class Source {
    public:
        virtual ~Source() = default;
        virtual std::uint64_t Version() = 0; // see Platform::ProcessTableVersion
        virtual std::vector<ProcessListing> List() = 0;
        virtual bool ReadFacts(long pid, ProcessFacts& facts) = 0;
        virtual bool LivesIn(long pid, const wxString& folder) = 0;
    };

    ProcessCache(); // the platform's processes
    explicit ProcessCache(Source& source) : source(source) {}

    // For each name (ignoring case), the live processes of that name that live in folder.
    std::vector<std::vector<long>> FindEach(const std::vector<wxString>& names,
                                            const wxString& folder);

    static constexpr std::uint64_t YOUNG_MS = 2000;
    static constexpr std::size_t RECHECKS_PER_LOOKUP = 16;

private:
    struct Known {
        std::uint64_t token = 0;
        std::uint64_t startTime = 0;
        wxString name; // lower case; empty when the facts could not be read
        bool live = false;
        bool young = false;
        unsigned listedIn = 0; // the lookup that last listed it
        unsigned readIn = 0;   // the lookup that last read its facts
        bool placeKnown = false;
        wxString placeFolder; // the folder inFolder answers for
        bool inFolder = false;
    };

    void ReadListing();
    void Refresh(long pid, Known& known);
    void RecheckInTurn();
    bool LivesIn(long pid, Known& known, const wxString& folder);

    Source& source;
    std::map<long, Known> known;
    unsigned lookup = 0;
    std::uint64_t listedVersion = 0; // the table's version at the last listing
    long turn = 0;                   // the pid the last re-check in turn ended at
};
