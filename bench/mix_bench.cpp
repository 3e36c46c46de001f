// The hot operations of a cycle, each beside a plain loop that does the same one sample at a time, in interleaved
// rounds of one run: what counts is the ratio, since it does not depend on the machine's mood.

#include "platform/audio/av_audio_converter.h"
#include "platform/audio/av_audio_pcm_buffer_pool.h"
#include "platform/audio/av_audio_player_node.h"
#include "platform/audio/mix_loops.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <numbers>
#include <vector>

namespace
{

using namespace tolvenary;
using Floats = std::vector<float>;

constexpr std::array<std::uint32_t, 5> blockLengths{0, 1, 128, 513, 4096};

// Kept from being vectorised: these are what the loops are measured against.

[[gnu::noinline, gnu::optimize("no-tree-vectorize")]] void addScalar(float *sum, const float *addend,
                                                                     std::uint32_t frames)
{
    for (std::uint32_t i = 0; i < frames; ++i)
        sum[i] += addend[i];
}

[[gnu::noinline, gnu::optimize("no-tree-vectorize")]] void rampScalar(float *samples, std::uint32_t frames, float from,
                                                                      float to)
{
    for (std::uint32_t i = 0; i < frames; ++i)
        samples[i] *= from + (to - from) * static_cast<float>(i + 1) / static_cast<float>(frames);
}

[[gnu::noinline, gnu::optimize("no-tree-vectorize")]] void crossfadeScalar(float *samples, const float *target,
                                                                           std::uint32_t frames)
{
    for (std::uint32_t i = 0; i < frames; ++i)
        samples[i] += (target[i] - samples[i]) * static_cast<float>(i + 1) / static_cast<float>(frames);
}

[[gnu::noinline, gnu::optimize("no-tree-vectorize", "no-tree-loop-distribute-patterns")]] void
copyScalar(float *to, const float *from, std::uint32_t frames)
{
    for (std::uint32_t i = 0; i < frames; ++i)
        to[i] = from[i];
}

/// 44.1 to 48 kHz with a filter as long as ours, straight from the definition.
class ScalarResampler
{
  public:
    ScalarResampler() : m_bank(phases * taps), m_history(taps, 0.0F)
    {
        for (std::size_t phase = 0; phase < phases; ++phase)
            for (std::size_t tap = 0; tap < taps; ++tap) {
                const double position = static_cast<double>(tap) - static_cast<double>(phase) / phases;
                const double x = std::numbers::pi * (position - taps / 2.0 + 1);
                m_bank[phase * taps + tap] = static_cast<float>(x == 0 ? 1 : std::sin(x) / x);
            }
    }

    [[gnu::noinline, gnu::optimize("no-tree-vectorize")]] std::uint32_t convert(const float *in, std::uint32_t frames,
                                                                                float *out)
    {
        std::uint32_t made = 0;
        m_history.insert(m_history.end(), in, in + frames);
        std::size_t first = 0;
        while (first + taps < m_history.size()) {
            float sum = 0;
            for (std::size_t tap = 0; tap < taps; ++tap)
                sum += m_history[first + tap] * m_bank[m_phase * taps + tap];
            out[made++] = sum;
            m_phase += 147;
            first += m_phase / phases;
            m_phase %= phases;
        }
        m_history.erase(m_history.begin(), m_history.begin() + static_cast<std::ptrdiff_t>(first));
        return made;
    }

  private:
    static constexpr std::size_t phases = 160;
    static constexpr std::size_t taps = 160;
    Floats m_bank;
    Floats m_history;
    std::size_t m_phase = 0;
};

double nanosecondsOf(const std::function<void()> &operation, int repeats)
{
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < repeats; ++i)
        operation();
    const std::chrono::duration<double, std::nano> took = std::chrono::steady_clock::now() - begin;
    return took.count() / repeats;
}

/// Medians of rounds in which the two take turns.
void compare(const char *name, std::uint32_t frames, const std::function<void()> &ours,
             const std::function<void()> &scalar)
{
    constexpr std::size_t rounds = 21;
    const int repeats = frames < 128 ? 20000 : static_cast<int>(4000000 / frames / 10);
    std::array<double, rounds> oursTook{};
    std::array<double, rounds> scalarTook{};
    for (std::size_t round = 0; round < rounds; ++round) {
        oursTook[round] = nanosecondsOf(ours, repeats);
        scalarTook[round] = nanosecondsOf(scalar, repeats);
    }
    std::nth_element(oursTook.begin(), oursTook.begin() + rounds / 2, oursTook.end());
    std::nth_element(scalarTook.begin(), scalarTook.begin() + rounds / 2, scalarTook.end());
    const double a = oursTook[rounds / 2];
    const double b = scalarTook[rounds / 2];
    std::printf("%-28s %5u frames  %9.1f ns  scalar %9.1f ns  ratio %.2f\n", name, frames, a, b, a / b);
}

void benchLoops(std::uint32_t frames)
{
    Floats samples(frames + 1, 1e-3F);
    const Floats other(frames + 1, 1e-3F);
    compare(
        "add", frames, [&] { addSamples(samples.data(), other.data(), frames); },
        [&] { addScalar(samples.data(), other.data(), frames); });
    compare(
        "gain ramp", frames,
        [&] {
            scaleAlongRamp(samples.data(), frames, {1, 0.999F, frames}, 0);
        },
        [&] { rampScalar(samples.data(), frames, 1, 0.999F); });
    compare(
        "crossfade", frames, [&] { crossfadeSamples(samples.data(), other.data(), frames, 0, frames); },
        [&] { crossfadeScalar(samples.data(), other.data(), frames); });
}

/// A buffer made, scheduled and rendered, against the two copies that cannot be had for less.
void benchPlayer(std::uint32_t frames)
{
    const auto format = AVAudioFormat::standardFormat(48000, 2).value();
    AVAudioPCMBufferPool pool(4, std::size_t{frames} * 8 + 8);
    AVAudioPlayerNode player;
    player.play();
    Floats left(frames + 1);
    Floats right(frames + 1);
    const Floats source(frames + 1, 0.5F);
    const std::array<float *, 2> channels{left.data(), right.data()};
    compare(
        "make, schedule, render", frames,
        [&] {
            auto buffer = pool.make(format, frames);
            buffer->setFrameLength(frames);
            player.scheduleBuffer(std::move(buffer), {});
            player.render({channels, std::max(frames, 1U)});
        },
        [&] {
            copyScalar(left.data(), source.data(), frames);
            copyScalar(right.data(), source.data(), frames);
        });
}

void benchConverter(std::uint32_t frames)
{
    const auto from = AVAudioFormat::standardFormat(44100, 2).value();
    const auto to = AVAudioFormat::standardFormat(48000, 2).value();
    const auto converter = AVAudioConverter::make(from, to, 4096);
    AVAudioPCMBufferPool pool(2, 1 << 16);
    const auto block = pool.make(from, frames);
    block->setFrameLength(frames);
    const auto output = pool.make(to, frames * 48000 / 44100 + 32);
    for (std::uint32_t c = 0; c < 2; ++c)
        std::fill_n(block->floatChannel(c), frames, 0.5F);
    std::array<ScalarResampler, 2> scalar;
    Floats scalarOut(output->frameCapacity());
    compare(
        "44.1 to 48 kHz, stereo", frames,
        [&] {
            const AVAudioPCMBuffer *next = block.get();
            converter->convertToBuffer(*output, nullptr, [&](std::uint32_t, AVAudioConverterInputStatus &status) {
                status =
                    next != nullptr ? AVAudioConverterInputStatus::haveData : AVAudioConverterInputStatus::noDataNow;
                return std::exchange(next, nullptr);
            });
        },
        [&] {
            for (std::uint32_t c = 0; c < 2; ++c)
                scalar[c].convert(block->floatChannel(c), frames, scalarOut.data());
        });
}

} // namespace

int main()
{
    for (const std::uint32_t frames : blockLengths)
        benchLoops(frames);
    for (const std::uint32_t frames : blockLengths)
        benchPlayer(frames);
    for (const std::uint32_t frames : blockLengths)
        benchConverter(frames);
}
