#include "platform/audio/mix_loops.h"

#include <cstddef>
#include <cstring>

namespace tolvenary
{

namespace
{

// The loops are written once, over vectors of so many lanes, and always inlined: into what each kind of processor is
// given below. Vectors go through references, because how they are passed depends on the kind.

template <std::size_t lanes> using Vector [[gnu::vector_size(lanes * sizeof(float))]] = float;

/// Vectors handled in one go, so that the processor need not wait for one before it begins the next.
constexpr std::size_t batch = 4;

template <std::size_t lanes> constexpr std::uint32_t batchFrames = batch *lanes;

template <std::size_t lanes> [[gnu::always_inline]] inline void load(Vector<lanes> &to, const float *from)
{
    std::memcpy(&to, from, sizeof to);
}

template <std::size_t lanes> [[gnu::always_inline]] inline void store(float *to, const Vector<lanes> &from)
{
    std::memcpy(to, &from, sizeof from);
}

/// How many frames a line has still to go, in each lane of a batch. It counts in floats, which are exact here: to turn
/// integers into floats would cost more than all the rest.
template <std::size_t lanes> class Countdown
{
  public:
    [[gnu::always_inline]] explicit Countdown(std::int32_t toEnd)
    {
        Vector<lanes> ordinals;
        for (std::size_t lane = 0; lane < lanes; ++lane)
            ordinals[lane] = static_cast<float>(lane);
        for (std::size_t i = 0; i < batch; ++i)
            m_left[i] = (static_cast<float>(toEnd) - static_cast<float>(i * lanes)) - ordinals;
    }

    [[gnu::always_inline]] const Vector<lanes> &operator[](std::size_t i) const { return m_left[i]; }

    [[gnu::always_inline]] void next()
    {
        for (Vector<lanes> &left : m_left)
            left -= static_cast<float>(batchFrames<lanes>);
    }

  private:
    Vector<lanes> m_left[batch]; // no std::array: as its parameter the type would lose its alignment
};

/// Frames from the given one to the last of a line.
std::int32_t framesToEnd(std::uint32_t length, std::uint32_t first)
{
    return static_cast<std::int32_t>(length - 1 - first);
}

template <std::size_t lanes>
[[gnu::always_inline]] inline void add(float *sum, const float *addend, std::uint32_t frames)
{
    std::uint32_t done = 0;
    for (; done + batchFrames<lanes> <= frames; done += batchFrames<lanes>) {
        for (std::size_t i = 0; i < batch; ++i) {
            Vector<lanes> a;
            Vector<lanes> b;
            load<lanes>(a, sum + done + i * lanes);
            load<lanes>(b, addend + done + i * lanes);
            store<lanes>(sum + done + i * lanes, a + b);
        }
    }
    for (; done < frames; ++done)
        sum[done] += addend[done];
}

template <std::size_t lanes> [[gnu::always_inline]] inline void scale(float *samples, std::uint32_t frames, float gain)
{
    std::uint32_t done = 0;
    for (; done + batchFrames<lanes> <= frames; done += batchFrames<lanes>) {
        for (std::size_t i = 0; i < batch; ++i) {
            Vector<lanes> a;
            load<lanes>(a, samples + done + i * lanes);
            store<lanes>(samples + done + i * lanes, a * gain);
        }
    }
    for (; done < frames; ++done)
        samples[done] *= gain;
}

template <std::size_t lanes>
[[gnu::always_inline]] inline void scaleAlong(float *samples, std::uint32_t frames, const GainRamp &ramp,
                                              std::uint32_t first)
{
    const float step = (ramp.to - ramp.from) / static_cast<float>(ramp.length);
    const float to = ramp.to;
    const std::int32_t toEnd = framesToEnd(ramp.length, first);
    Countdown<lanes> left(toEnd);
    std::uint32_t done = 0;
    for (; done + batchFrames<lanes> <= frames; done += batchFrames<lanes>) {
        for (std::size_t i = 0; i < batch; ++i) {
            Vector<lanes> a;
            load<lanes>(a, samples + done + i * lanes);
            store<lanes>(samples + done + i * lanes, a * (to - step * left[i]));
        }
        left.next();
    }
    for (; done < frames; ++done)
        samples[done] *= to - step * static_cast<float>(toEnd - static_cast<std::int32_t>(done));
}

template <std::size_t lanes>
[[gnu::always_inline]] inline void crossfade(float *samples, const float *target, std::uint32_t frames,
                                             std::uint32_t first, std::uint32_t length)
{
    const float step = 1.0F / static_cast<float>(length);
    const std::int32_t toEnd = framesToEnd(length, first);
    Countdown<lanes> left(toEnd);
    std::uint32_t done = 0;
    for (; done + batchFrames<lanes> <= frames; done += batchFrames<lanes>) {
        for (std::size_t i = 0; i < batch; ++i) {
            Vector<lanes> a;
            Vector<lanes> b;
            load<lanes>(a, samples + done + i * lanes);
            load<lanes>(b, target + done + i * lanes);
            store<lanes>(samples + done + i * lanes, b - (b - a) * (step * left[i]));
        }
        left.next();
    }
    for (; done < frames; ++done) {
        const float part = step * static_cast<float>(toEnd - static_cast<std::int32_t>(done));
        samples[done] = target[done] - (target[done] - samples[done]) * part;
    }
}

constexpr std::size_t plain = 4;

void addPlain(float *sum, const float *addend, std::uint32_t frames)
{
    add<plain>(sum, addend, frames);
}

void scalePlain(float *samples, std::uint32_t frames, float gain)
{
    scale<plain>(samples, frames, gain);
}

void scaleAlongPlain(float *samples, std::uint32_t frames, const GainRamp &ramp, std::uint32_t first)
{
    scaleAlong<plain>(samples, frames, ramp, first);
}

void crossfadePlain(float *samples, const float *target, std::uint32_t frames, std::uint32_t first,
                    std::uint32_t length)
{
    crossfade<plain>(samples, target, frames, first, length);
}

constexpr MixLoops plainLoops{addPlain, scalePlain, scaleAlongPlain, crossfadePlain};

#ifdef __x86_64__

// AVX2 without FMA, which would round differently.

constexpr std::size_t wide = 8;

[[gnu::target("avx2")]] void addWide(float *sum, const float *addend, std::uint32_t frames)
{
    add<wide>(sum, addend, frames);
}

[[gnu::target("avx2")]] void scaleWide(float *samples, std::uint32_t frames, float gain)
{
    scale<wide>(samples, frames, gain);
}

[[gnu::target("avx2")]] void scaleAlongWide(float *samples, std::uint32_t frames, const GainRamp &ramp,
                                            std::uint32_t first)
{
    scaleAlong<wide>(samples, frames, ramp, first);
}

[[gnu::target("avx2")]] void crossfadeWide(float *samples, const float *target, std::uint32_t frames,
                                           std::uint32_t first, std::uint32_t length)
{
    crossfade<wide>(samples, target, frames, first, length);
}

constexpr MixLoops wideLoops{addWide, scaleWide, scaleAlongWide, crossfadeWide};

const MixLoops *wideLoopsHere()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") != 0 ? &wideLoops : nullptr;
}

#else

const MixLoops *wideLoopsHere()
{
    return nullptr;
}

#endif

// Asked once, before main() runs, so that the real-time thread finds it done.
const MixLoops *const wideHere = wideLoopsHere();
const MixLoops &best = wideHere != nullptr ? *wideHere : plainLoops;

} // namespace

void addSamples(float *sum, const float *addend, std::uint32_t frames)
{
    best.add(sum, addend, frames);
}

void scaleSamples(float *samples, std::uint32_t frames, float gain)
{
    best.scale(samples, frames, gain);
}

void scaleAlongRamp(float *samples, std::uint32_t frames, const GainRamp &ramp, std::uint32_t first)
{
    best.scaleAlong(samples, frames, ramp, first);
}

void crossfadeSamples(float *samples, const float *target, std::uint32_t frames, std::uint32_t first,
                      std::uint32_t length)
{
    best.crossfade(samples, target, frames, first, length);
}

const MixLoops &plainMixLoops()
{
    return plainLoops;
}

const MixLoops *wideMixLoops()
{
    return wideHere;
}

} // namespace tolvenary
