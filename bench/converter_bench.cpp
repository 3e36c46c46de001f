// Conversion between rates, a cycle of 256 frames at a time, beside the library that ours is made of and three others:
// time, worst block, a block with cold caches, delay, and how far a tone stands above all that is not the tone.

#include "bench/median.h"
#include "bench/report.h"
#include "bench/resamplers.h"
#include "tests/session/support/tone_level.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <numbers>
#include <stdexcept>

namespace
{

using namespace tolvenary::bench;

constexpr int target = 48000;
constexpr std::size_t rounds = 11;

/// So many that each round of 44.1 kHz to 48 kHz ends with the phase with which it began.
constexpr std::size_t blocksARound = 294;

StereoBlock blockOf(const std::vector<float> &samples)
{
    StereoBlock block{{samples, samples}, {}};
    for (const float sample : samples)
        block.interleaved.insert(block.interleaved.end(), {sample, sample});
    return block;
}

/// 997 Hz, in blocks; long enough for whoever lets a second pass before anything comes.
std::vector<StereoBlock> toneBlocks(int rate)
{
    std::vector<StereoBlock> blocks;
    std::size_t frame = 0;
    for (std::size_t i = 0; i < blocksARound; ++i) {
        std::vector<float> samples(longestBlock);
        for (float &sample : samples)
            sample = static_cast<float>(
                0.5 * std::sin(2 * std::numbers::pi * 997 * static_cast<double>(frame++) / static_cast<double>(rate)));
        blocks.push_back(blockOf(samples));
    }
    return blocks;
}

double processorNanoseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

/// What one resampler did in all rounds.
struct Performance {
    std::vector<double> nanosecondsAFrame = {}; ///< of the input, one a round
    std::vector<double> worstBlock = {};        ///< microseconds, one a round
    std::vector<double> coldBlock = {};         ///< microseconds, one a round
    double delay = 0;                           ///< frames at the target's rate
    double decibels = 0;
};

void convertAll(Resampler &resampler, const std::vector<StereoBlock> &input)
{
    for (const StereoBlock &block : input)
        resampler.convert(block);
}

double timeRound(Resampler &resampler, const std::vector<StereoBlock> &input)
{
    convertAll(resampler, input); // whoever came before has taken the caches
    const double begin = processorNanoseconds();
    convertAll(resampler, input);
    return (processorNanoseconds() - begin) / static_cast<double>(input.size() * longestBlock);
}

double microsecondsOf(Resampler &resampler, const StereoBlock &block)
{
    const auto begin = std::chrono::steady_clock::now();
    resampler.convert(block);
    const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - begin;
    return took.count();
}

/// The longest of all blocks: who works in larger pieces than he is given is late in one of them. Each pass begins with
/// a new stream, so that the block of one number is the same work in each; what the machine steals is another block in
/// each, and the least of the passes is the block's own.
double worstBlockOf(const ResamplerKind &kind, int rate, const std::vector<StereoBlock> &input)
{
    constexpr int passes = 3;
    std::vector<double> least(input.size(), std::numeric_limits<double>::max());
    for (int pass = 0; pass < passes; ++pass) {
        const auto resampler = kind.make(rate, target);
        convertAll(*resampler, input);
        for (std::size_t i = 0; i < input.size(); ++i)
            least[i] = std::min(least[i], microsecondsOf(*resampler, input[i]));
    }
    return *std::max_element(least.begin(), least.end());
}

/// A block as it comes in a cycle, when everybody else has run since the last: the median, with the caches emptied
/// before each.
double coldBlockOf(const ResamplerKind &kind, int rate, const std::vector<StereoBlock> &input)
{
    constexpr std::size_t moreThanTheCaches = 8 << 20;
    constexpr std::size_t blocks = 49;
    std::vector<char> others(moreThanTheCaches);
    const auto resampler = kind.make(rate, target);
    convertAll(*resampler, input);
    std::vector<double> took;
    for (std::size_t i = 0; i < blocks; ++i) {
        std::fill(others.begin(), others.end(), static_cast<char>(i));
        asm volatile("" ::"r"(others.data()) : "memory"); // or the compiler would see that nobody reads it
        took.push_back(microsecondsOf(*resampler, input[i]));
    }
    return spread(took).median;
}

/// By how many frames a click comes later than it went in, for a listener who must never run dry: where it stands in
/// the stream, and by how much the stream may be behind what has gone in.
double delayOf(const ResamplerKind &kind, int rate)
{
    constexpr std::size_t clickBlock = 64;
    const auto resampler = kind.make(rate, target);
    std::vector<float> click(longestBlock, 0.0F);
    const StereoBlock silence = blockOf(click);
    click.front() = 1;
    const double ratio = static_cast<double>(target) / rate;
    std::vector<float> out;
    double behind = 0;
    for (std::size_t i = 0; i < 2 * clickBlock; ++i) {
        resampler->convert(i == clickBlock ? blockOf(click) : silence);
        const std::vector<float> made = resampler->left();
        out.insert(out.end(), made.begin(), made.end());
        behind =
            std::max(behind, ratio * static_cast<double>((i + 1) * longestBlock) - static_cast<double>(out.size()));
    }
    const auto peak = std::max_element(out.begin(), out.end());
    return static_cast<double>(peak - out.begin()) - ratio * clickBlock * longestBlock + behind;
}

double decibelsOf(const ResamplerKind &kind, int rate, const std::vector<StereoBlock> &input)
{
    const auto resampler = kind.make(rate, target);
    std::vector<float> out;
    for (const StereoBlock &block : input) {
        resampler->convert(block);
        const std::vector<float> made = resampler->left();
        out.insert(out.end(), made.begin(), made.end());
    }
    const auto settled = std::span(out).subspan(out.size() / 2);
    const double level = tolvenary::session::toneAmplitudes(settled, target, {997}).front();
    return 20 *
           std::log10(level / std::numbers::sqrt2 / tolvenary::session::residueBesideTones(settled, target, {997}));
}

void reportAll(const std::string &rates, const ResamplerKind &kind, const Performance &ours, const Performance &theirs,
               bool isRaw)
{
    const std::string part = "Converter";
    const auto aim = [&](double value) { return isRaw ? std::optional(value) : std::nullopt; };
    report({.part = part,
            .work = rates + ", time a frame",
            .beside = kind.name,
            .unit = "ns",
            .ours = ours.nanosecondsAFrame,
            .theirs = theirs.nanosecondsAFrame,
            .mostRatio = aim(1.1)});
    report({.part = part,
            .work = rates + ", worst block of 256",
            .beside = kind.name,
            .unit = "us",
            .ours = ours.worstBlock,
            .theirs = theirs.worstBlock,
            .mostRatio = aim(1.1)});
    report({.part = part,
            .work = rates + ", a block of 256, caches cold",
            .beside = kind.name,
            .unit = "us",
            .ours = ours.coldBlock,
            .theirs = theirs.coldBlock});
    report({.part = part,
            .work = rates + ", delay",
            .beside = kind.name,
            .unit = "frames",
            .ours = {ours.delay},
            .theirs = {theirs.delay}});
    report({.part = part,
            .work = rates + ", 997 Hz over all else",
            .beside = kind.name,
            .unit = "dB",
            .ours = {ours.decibels},
            .theirs = {theirs.decibels},
            .leastOfOurs = aim(137)});
}

void compare(int rate)
{
    const std::string rates = std::to_string(rate) + " to " + std::to_string(target) + " Hz";
    progress("Converter: " + rates);
    const std::vector<StereoBlock> input = toneBlocks(rate);
    const auto &kinds = resamplers();
    std::vector<std::unique_ptr<Resampler>> streams;
    std::vector<Performance> performances(kinds.size());
    streams.reserve(kinds.size());
    for (const ResamplerKind &kind : kinds)
        streams.push_back(kind.make(rate, target));
    for (std::size_t round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < kinds.size(); ++i)
            performances[i].nanosecondsAFrame.push_back(timeRound(*streams[i], input));
        for (std::size_t i = 0; i < kinds.size(); ++i)
            performances[i].worstBlock.push_back(worstBlockOf(kinds[i], rate, input));
        for (std::size_t i = 0; i < kinds.size(); ++i)
            performances[i].coldBlock.push_back(coldBlockOf(kinds[i], rate, input));
    }
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        performances[i].delay = delayOf(kinds[i], rate);
        performances[i].decibels = decibelsOf(kinds[i], rate, input);
    }
    for (std::size_t i = 1; i < kinds.size(); ++i)
        reportAll(rates, kinds[i], performances[0], performances[i], i == 1);
}

} // namespace

int main()
{
    try {
        for (const int rate : {44100, 96000, 16000})
            compare(rate);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
