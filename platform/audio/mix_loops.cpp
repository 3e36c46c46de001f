#include "platform/audio/mix_loops.h"

namespace tolvenary
{

namespace
{

/// Frames from the given one to the last of a line; signed, because that is what processors turn into floats at speed.
std::int32_t framesToEnd(std::uint32_t length, std::uint32_t first)
{
    return static_cast<std::int32_t>(length - 1 - first);
}

} // namespace

void addSamples(float *sum, const float *addend, std::uint32_t frames)
{
    for (std::uint32_t i = 0; i < frames; ++i)
        sum[i] += addend[i];
}

void scaleSamples(float *samples, std::uint32_t frames, float gain)
{
    for (std::uint32_t i = 0; i < frames; ++i)
        samples[i] *= gain;
}

void scaleAlongRamp(float *samples, std::uint32_t frames, const GainRamp &ramp, std::uint32_t first)
{
    const float step = (ramp.to - ramp.from) / static_cast<float>(ramp.length);
    const float to = ramp.to;
    const std::int32_t toEnd = framesToEnd(ramp.length, first);
    const auto count = static_cast<std::int32_t>(frames);
    for (std::int32_t i = 0; i < count; ++i)
        samples[i] *= to - step * static_cast<float>(toEnd - i);
}

void crossfadeSamples(float *samples, const float *target, std::uint32_t frames, std::uint32_t first,
                      std::uint32_t length)
{
    const float step = 1.0F / static_cast<float>(length);
    const std::int32_t toEnd = framesToEnd(length, first);
    const auto count = static_cast<std::int32_t>(frames);
    for (std::int32_t i = 0; i < count; ++i)
        samples[i] = target[i] - (target[i] - samples[i]) * (step * static_cast<float>(toEnd - i));
}

} // namespace tolvenary
