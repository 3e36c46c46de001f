#include "tests/session/tools/demo_measures.h"

#include "tests/session/support/source_fit.h"
#include "tests/session/support/tone_level.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>

namespace tolvenary::session
{

namespace
{

constexpr std::size_t correlated = 48000;
constexpr long mostDelay = 2500; ///< more than two cycles

std::uint64_t countAfter(const std::string &line, const std::string &label)
{
    const auto at = line.find(label);
    return at == std::string::npos ? 0 : std::strtoull(line.c_str() + at + label.size(), nullptr, 10);
}

long delayOf(const Samples &mix, const Samples &source)
{
    const std::size_t frames = std::min(mix.size(), correlated);
    return delayInMix(std::span(mix).first(frames), std::span(source).first(frames), mostDelay);
}

/// The source as the device should have it, so that level and gaps can be told whatever the delay.
Samples delayed(const Samples &source, long delay)
{
    Samples result(source.size(), 0.0F);
    for (std::size_t i = 0; i < source.size(); ++i) {
        const long from = static_cast<long>(i) - delay;
        if (from >= 0 && from < static_cast<long>(source.size()))
            result[i] = source[static_cast<std::size_t>(from)];
    }
    return result;
}

Samples without(const Samples &mix, const Samples &source, double gain)
{
    Samples rest(mix.size());
    for (std::size_t i = 0; i < mix.size(); ++i)
        rest[i] = mix[i] - static_cast<float>(gain) * source[i];
    return rest;
}

/// The delays of two sources in one mix. Each blurs the other's correlation, so each is looked for once more in what
/// is left when the other is taken out.
std::pair<long, long> delaysOf(const Samples &mix, const Samples &voice, const Samples &music)
{
    long voiceDelay = delayOf(mix, voice);
    long musicDelay = delayOf(mix, music);
    for (int round = 0; round < 2; ++round) {
        const std::vector<Samples> sources = {delayed(voice, voiceDelay), delayed(music, musicDelay)};
        const SourceFit fit = fitSources(mix, sources);
        voiceDelay = delayOf(without(mix, sources[1], fit.gains[1]), voice);
        musicDelay = delayOf(without(mix, sources[0], fit.gains[0]), music);
    }
    return {voiceDelay, musicDelay};
}

void measureSide(const Recording &recording, Stretch stretch, const DemoGains &gains, bool isLeft,
                 DemoMeasures &measures)
{
    const std::string side = isLeft ? ", left" : ", right";
    const Samples voice = recording.part(demoVoice, stretch);
    const Samples music = recording.part(isLeft ? demoMusicLeft : demoMusicRight, stretch);
    const Samples mix = recording.part(isLeft ? demoDeviceLeft : demoDeviceRight, stretch);
    const auto [voiceDelay, musicDelay] = delaysOf(mix, voice, music);
    const SourceFit fit = fitSources(mix, {delayed(voice, voiceDelay), delayed(music, musicDelay)});
    measures.sources.push_back(
        {"microphone" + side, gains.microphone, decibels(fit.gains[0] / gains.microphone), voiceDelay});
    measures.sources.push_back(
        {"application" + side, gains.application, decibels(fit.gains[1] / gains.application), musicDelay});
    measures.gaps += fit.gaps.size();
}

void append(std::string &bytes, const void *data, std::size_t size)
{
    bytes.append(static_cast<const char *>(data), size);
}

template <typename Number> void append(std::string &bytes, Number number)
{
    append(bytes, &number, sizeof number);
}

std::string waveHeader(std::uint32_t rate, std::uint32_t dataSize)
{
    constexpr std::uint16_t floatSamples = 3;
    constexpr std::uint16_t channels = 2;
    constexpr std::uint16_t frameSize = channels * sizeof(float);
    std::string header = "RIFF";
    append(header, std::uint32_t{36} + dataSize);
    header += "WAVEfmt ";
    append(header, std::uint32_t{16});
    append(header, floatSamples);
    append(header, channels);
    append(header, rate);
    append(header, rate * frameSize);
    append(header, frameSize);
    append(header, std::uint16_t{32});
    header += "data";
    append(header, dataSize);
    return header;
}

} // namespace

DemoMeasures measure(const Recording &recording, const DemoGains &gains, const std::string &statusLine)
{
    DemoMeasures measures;
    const Stretch stretch = recording.longestUnbroken();
    measures.seconds = static_cast<double>(stretch.length()) / recording.rate;
    measures.jumps = recording.jumps();
    measures.microphoneFrames = countAfter(statusLine, "mic:");
    measures.applicationFrames = countAfter(statusLine, "app:");
    measureSide(recording, stretch, gains, true, measures);
    measureSide(recording, stretch, gains, false, measures);
    return measures;
}

bool report(const DemoMeasures &measures)
{
    bool isGood =
        measures.gaps == 0 && measures.microphoneFrames > 0 && measures.applicationFrames > 0 && measures.seconds > 1;
    std::printf("\n%-20s %8s %14s %8s\n", "source in the device", "gain", "level error", "delay");
    for (const DemoSource &source : measures.sources) {
        std::printf("%-20s %8.2f %+11.3f dB %8ld frames\n", source.name.c_str(), source.gain, source.levelError,
                    source.delay);
        isGood = isGood && std::abs(source.levelError) < 0.1 && source.delay == 0;
    }
    std::printf("gaps %zu, frames counted: microphone %llu, application %llu\n", measures.gaps,
                static_cast<unsigned long long>(measures.microphoneFrames),
                static_cast<unsigned long long>(measures.applicationFrames));
    std::printf("measured over %.1f s; the machine was late %zu times\n%s\n", measures.seconds, measures.jumps,
                isGood ? "All as it should be." : "NOT as it should be.");
    return isGood;
}

void saveMix(const Recording &recording, const std::filesystem::path &file)
{
    std::string bytes = waveHeader(static_cast<std::uint32_t>(recording.rate),
                                   static_cast<std::uint32_t>(recording.frames() * 2 * sizeof(float)));
    for (std::size_t i = 0; i < recording.frames(); ++i) {
        append(bytes, recording.tracks[demoDeviceLeft][i]);
        append(bytes, recording.tracks[demoDeviceRight][i]);
    }
    std::ofstream(file, std::ios::binary) << bytes;
}

} // namespace tolvenary::session
