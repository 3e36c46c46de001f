#pragma once

#include "tests/session/mix_bed.h"
#include "tests/session/support/clicks.h"

#include <cstdio>
#include <map>

namespace tolvenary::session
{

/// "frames late: how often" of all clicks of one track that are in another.
inline std::map<long, int> delays(const Recording &recording, std::size_t source, std::size_t device)
{
    std::map<long, int> counts;
    for (const Stretch stretch : recording.unbroken()) {
        const auto played = findClicks(recording.part(source, stretch), 0.2F);
        const auto heard = findClicks(recording.part(device, stretch), 0.2F);
        for (const long delay : clickDelays(played, heard, 9600))
            ++counts[delay];
    }
    return counts;
}

/// Every click that is heard is 0 frames late, and ten of them at least. What a late wake-up of the machine left behind
/// is skipped after a while: where the clock jumped it is listened to again.
inline bool areAtOnce(MixBed &bed, Recorder &recorder, std::size_t source, std::size_t device)
{
    for (int attempt = 0; attempt < 8; ++attempt) {
        const Recording recording = bed.record(recorder, 84000);
        const auto counts = delays(recording, source, device);
        for (const auto &[delay, count] : counts)
            std::printf("  track %zu: %ld frames late (%d clicks)\n", source, delay, count);
        if (counts.size() == 1 && counts.begin()->first == 0 && counts.begin()->second >= 10)
            return true;
        if (recording.jumps() == 0)
            return false;
    }
    return false;
}

} // namespace tolvenary::session
