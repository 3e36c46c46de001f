#pragma once

#include "tests/session/mix_bed.h"
#include "tests/session/support/clicks.h"

#include <cstdio>
#include <map>

namespace tolvenary::session
{

/// Tracks of a recording with the same clicks in them, and which of them count as the same.
struct ClickTracks {
    std::size_t source = 0;
    std::size_t device = 0;
    long mostLate = 2400;
    float threshold = 0.2F; ///< in the device
};

/// "frames late: how often"
using ClickDelays = std::map<long, int>;

inline ClickDelays delays(const Recording &recording, const ClickTracks &tracks)
{
    ClickDelays counts;
    for (const Stretch stretch : recording.unbroken()) {
        const auto played = findClicks(recording.part(tracks.source, stretch), 0.2F);
        const auto heard = findClicks(recording.part(tracks.device, stretch), tracks.threshold);
        for (const long delay : clickDelays(played, heard, tracks.mostLate))
            ++counts[delay];
    }
    return counts;
}

/// Every click that is heard is 0 frames late, and there are ten of them at least.
inline bool areAtOnce(const ClickDelays &counts)
{
    return counts.size() == 1 && counts.begin()->first == 0 && counts.begin()->second >= 10;
}

/// The delays of `what`. A late wake-up of the machine delays the sound until the players have skipped what it left
/// behind: if the clock jumped, this listens again until none is late; if it did not, nothing excuses us.
inline ClickDelays listenToClicks(const char *what, MixBed &bed, Recorder &recorder, const ClickTracks &tracks)
{
    ClickDelays counts;
    for (int attempt = 0; attempt < 8; ++attempt) {
        const Recording recording = bed.record(recorder, 84000);
        counts = delays(recording, tracks);
        std::printf("  %s, quantum %u, %zu jumps of the clock:", what, recording.cycles.back().frames,
                    recording.jumps());
        for (const auto &[delay, count] : counts)
            std::printf(" %ld frames late (%d clicks)", delay, count);
        std::printf("\n");
        if (areAtOnce(counts) || recording.jumps() == 0)
            break;
    }
    return counts;
}

} // namespace tolvenary::session
