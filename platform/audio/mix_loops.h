#pragma once

#include <cstdint>

namespace tolvenary
{

/// A straight line over `length` frames that ends exactly at `to`; the frame before the first had `from`.
struct GainRamp {
    float from = 1;
    float to = 1;
    std::uint32_t length = 0;
};

// The inner loops of the mix, as wide as this processor has them. real-time

void addSamples(float *sum, const float *addend, std::uint32_t frames);
void scaleSamples(float *samples, std::uint32_t frames, float gain);

/// Scales `frames` frames by the ramp's part that begins `first` frames into it.
void scaleAlongRamp(float *samples, std::uint32_t frames, const GainRamp &ramp, std::uint32_t first);

/// Moves from what is in `samples` to what is in `target`, in a straight line over `length` frames, of which these
/// begin at `first`; the last of the line is exactly the target.
void crossfadeSamples(float *samples, const float *target, std::uint32_t frames, std::uint32_t first,
                      std::uint32_t length);

/// The same loops for one kind of processor. All kinds give the same samples, to the last bit.
struct MixLoops {
    void (*add)(float *sum, const float *addend, std::uint32_t frames);
    void (*scale)(float *samples, std::uint32_t frames, float gain);
    void (*scaleAlong)(float *samples, std::uint32_t frames, const GainRamp &ramp, std::uint32_t first);
    void (*crossfade)(float *samples, const float *target, std::uint32_t frames, std::uint32_t first,
                      std::uint32_t length);
};

/// For every processor that the program is built for.
const MixLoops &plainMixLoops();
/// Twice as wide (AVX2); null if this processor has no such instructions.
const MixLoops *wideMixLoops();

} // namespace tolvenary
