#include "bench/kernels.h"
#include "bench/traffic.h"
#include "platform/audio/mix_loops.h"

namespace tolvenary::bench
{

namespace
{

/// Two stereo sources, each along a gain that moves, then their sum.
void mix(const MixLoops &loops, Stereo &a, Stereo &b, std::uint32_t frames)
{
    for (std::size_t c = 0; c < 2; ++c) {
        loops.scaleAlong(a.channels[c].data(), frames, {1, 1.0001F, frames}, 0);
        loops.scaleAlong(b.channels[c].data(), frames, {1, 0.9999F, frames}, 0);
        loops.add(a.channels[c].data(), b.channels[c].data(), frames);
    }
}

void onlyTraffic(const Traffic &traffic, Stereo &a, Stereo &b, std::uint32_t frames)
{
    for (std::size_t c = 0; c < 2; ++c) {
        traffic.oneToOne(a.channels[c].data(), a.channels[c].data(), frames);
        traffic.oneToOne(b.channels[c].data(), b.channels[c].data(), frames);
        traffic.twoToOne(a.channels[c].data(), a.channels[c].data(), b.channels[c].data(), frames);
    }
}

void fightAll(Duels &duels, const char *kind, const MixLoops &loops, const Traffic &traffic, double aim)
{
    for (const std::uint32_t frames : cycleSizes) {
        Stereo a; // silence: what is scaled again and again must not grow
        Stereo b;
        duels.fight(
            {.part = "Mixing",
             .work = std::string("two gains and the sum, ") + kind + framesOf(frames),
             .beside = "load and store",
             .mostRatio = aim},
            [&] { mix(loops, a, b, frames); }, [&] { onlyTraffic(traffic, a, b, frames); });
    }
}

} // namespace

void benchLoops(Duels &duels)
{
    fightAll(duels, "plain", plainMixLoops(), plainTraffic(), 1.9);
    if (wideMixLoops() != nullptr)
        fightAll(duels, "AVX2", *wideMixLoops(), *wideTraffic(), 1.4);
    else
        progress("this processor has no AVX2");
}

} // namespace tolvenary::bench
