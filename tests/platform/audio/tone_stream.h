#pragma once

#include "platform/audio/av_audio_converter.h"
#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>
#include <utility>

namespace tolvenary::test
{

/// What a converter is asked to carry: channel c at 1/(c + 1) of the level.
struct ToneOf {
    double hz = 997;
    double level = 0.5;
};

/// Writes a sample between -1 and 1 in whatever type and layout the buffer has.
inline void putSample(AVAudioPCMBuffer &buffer, std::uint32_t frame, std::uint32_t channel, double value)
{
    const AVAudioFormat &format = buffer.format();
    const std::size_t buffers = format.isInterleaved() ? 0 : channel;
    const std::size_t sample =
        format.isInterleaved() ? std::size_t{frame} * format.channelCount() + channel : std::size_t{frame};
    auto *const samples = buffer.mutableAudioBufferList()[buffers].mData;
    const auto whole = [&](double most) { return std::round(std::clamp(value * (most + 1), -most - 1, most)); };
    switch (format.commonFormat()) {
    case AVAudioCommonFormat::pcmFormatFloat32:
        static_cast<float *>(samples)[sample] = static_cast<float>(value);
        break;
    case AVAudioCommonFormat::pcmFormatFloat64:
        static_cast<double *>(samples)[sample] = value;
        break;
    case AVAudioCommonFormat::pcmFormatInt16:
        static_cast<std::int16_t *>(samples)[sample] = static_cast<std::int16_t>(whole(32767));
        break;
    case AVAudioCommonFormat::pcmFormatInt32:
        static_cast<std::int32_t *>(samples)[sample] = static_cast<std::int32_t>(whole(2147483647));
        break;
    case AVAudioCommonFormat::other:
        FAIL() << "no such samples";
    }
}

/// Feeds a tone block by block, as a capture does, and keeps all that comes out, in standard stereo.
class ToneStream
{
  public:
    ToneStream(const AVAudioFormat &from, double toRate, ToneOf tone = {}, std::uint32_t longestBlock = 8192)
        : m_tone(tone),
          m_from(from),
          m_to(standardFormat(toRate)),
          m_converter(AVAudioConverter::make(m_from, m_to, longestBlock)),
          m_pool(2, 1 << 20)
    {
    }

    /// Answers the frames that came out.
    std::uint32_t feed(std::uint32_t frames)
    {
        const auto block = m_pool.make(m_from, frames);
        block->setFrameLength(frames);
        for (std::uint32_t i = 0; i < frames; ++i) {
            const double phase =
                2 * std::numbers::pi * m_tone.hz * static_cast<double>(m_fed + i) / m_from.sampleRate();
            const double value = m_tone.level * std::sin(phase);
            for (std::uint32_t c = 0; c < m_from.channelCount(); ++c)
                putSample(*block, i, c, value / (c + 1));
        }
        m_fed += frames;
        return convert(*block);
    }

    std::array<std::vector<float>, 2> channels;

  private:
    std::uint32_t convert(const AVAudioPCMBuffer &block)
    {
        const double share = m_to.sampleRate() / m_from.sampleRate() * block.frameLength();
        const auto output = m_pool.make(m_to, static_cast<std::uint32_t>(share + 32.0));
        const AVAudioPCMBuffer *next = &block;
        Error error;
        const auto status =
            m_converter->convertToBuffer(*output, &error, [&](std::uint32_t, AVAudioConverterInputStatus &inputStatus) {
                inputStatus =
                    next != nullptr ? AVAudioConverterInputStatus::haveData : AVAudioConverterInputStatus::noDataNow;
                return std::exchange(next, nullptr);
            });
        EXPECT_EQ(status, AVAudioConverterOutputStatus::inputRanDry);
        EXPECT_EQ(error, Error());
        for (std::uint32_t c = 0; c < 2; ++c)
            channels[c].insert(channels[c].end(), output->floatChannel(c),
                               output->floatChannel(c) + output->frameLength());
        return output->frameLength();
    }

    ToneOf m_tone;
    AVAudioFormat m_from;
    AVAudioFormat m_to;
    std::unique_ptr<AVAudioConverter> m_converter;
    AVAudioPCMBufferPool m_pool;
    std::uint64_t m_fed = 0;
};

struct MeasuredTone {
    double level;
    double snr; ///< dB above everything that is not the tone: noise, images and aliases together
};

/// The best-fitting tone of the known frequency in the samples from `first` on, and how far it stands above the rest.
inline MeasuredTone measureTone(const std::vector<float> &samples, std::size_t first, double rate, double hz)
{
    double ss = 0;
    double cc = 0;
    double sc = 0;
    double xs = 0;
    double xc = 0;
    const double step = 2 * std::numbers::pi * hz / rate;
    for (std::size_t i = first; i < samples.size(); ++i) {
        const double s = std::sin(step * static_cast<double>(i));
        const double c = std::cos(step * static_cast<double>(i));
        const double x = samples[i];
        ss += s * s;
        cc += c * c;
        sc += s * c;
        xs += x * s;
        xc += x * c;
    }
    const double determinant = ss * cc - sc * sc;
    const double a = (xs * cc - xc * sc) / determinant;
    const double b = (xc * ss - xs * sc) / determinant;
    const double tonePower = a * a * ss + 2 * a * b * sc + b * b * cc;
    double residue = std::numeric_limits<double>::min();
    for (std::size_t i = first; i < samples.size(); ++i) {
        const double phase = step * static_cast<double>(i);
        const double difference = samples[i] - a * std::sin(phase) - b * std::cos(phase);
        residue += difference * difference;
    }
    return {std::hypot(a, b), 10 * std::log10(tonePower / residue)};
}

/// dB of the samples' power over that of a sine of this level.
inline double decibelsOver(double level, const std::vector<float> &samples, std::size_t first)
{
    double power = std::numeric_limits<double>::min();
    for (std::size_t i = first; i < samples.size(); ++i)
        power += double{samples[i]} * samples[i];
    return 10 * std::log10(power / static_cast<double>(samples.size() - first) / (level * level / 2));
}

} // namespace tolvenary::test
