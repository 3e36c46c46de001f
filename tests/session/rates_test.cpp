#include "tests/session/mix_bed.h"
#include "tests/session/support/sine_fit.h"
#include "tests/session/support/tone_level.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <iterator>
#include <set>

namespace tolvenary::session
{

namespace
{

using Clock = std::chrono::steady_clock;

const std::vector<double> tones = {997, 1499, 601};
const std::vector<double> amplitudes = {0.25, 0.2, 0.2};
enum Track : std::size_t { microphone, firstApplication, secondApplication, left, right };

/// Frames a second of the graph. At 48000 the mix has nothing to convert; elsewhere it converts both ways.
struct RateCase {
    int graph;
    std::string microphoneChannels;
    std::vector<int> applications;
};

std::ostream &operator<<(std::ostream &out, const RateCase &rates)
{
    return out << rates.graph;
}

/// Seconds to listen to each rate: long enough to meet what is rare, or as many as TOLVENARY_RATES_SECONDS says. Under
/// CTest it says a few.
int secondsWanted()
{
    const char *wish = std::getenv("TOLVENARY_RATES_SECONDS");
    return wish != nullptr ? std::atoi(wish) : 120;
}

/// Too short to have heard every length of cycle.
bool isShort()
{
    return secondsWanted() < 120;
}

/// Its first channels carry the voice; what the others carry must not be heard.
std::vector<std::string> voiceIn(const std::string &channels)
{
    std::istringstream stream(channels);
    std::vector<std::string> voice;
    for (std::string channel; stream >> channel;)
        voice.push_back(channel + (voice.size() < 2 ? "=tone:997:0.25" : "=tone:3001:0.5"));
    return voice;
}

MixBedOptions optionsFor(const RateCase &rates)
{
    // A sink's own monitor: behind a machine's overruns the loopback of a pair may hand on nothing for good.
    MixBedOptions options{.deviceKind = DeviceKind::nullSink,
                          .microphoneChannels = rates.microphoneChannels,
                          .voice = voiceIn(rates.microphoneChannels),
                          .urgent = true};
    options.configuration.rate = rates.graph;
    options.player.rate = rates.applications[0];
    return options;
}

/// What a late wake-up has left in the players' queues has been skipped by then.
constexpr int excusedCycles = 16;

/// What a run has shown so far. A window is bad where its residue is over the limit.
struct Findings {
    std::size_t windows = 0;
    std::size_t clean = 0;
    std::size_t ours = 0;
    std::size_t sources = 0; ///< bad before us already
    std::size_t xruns = 0;   ///< bad where a jump of the clock is the reason
    std::size_t jumps = 0;
    double noise = 0; ///< the most in a window that has no excuse, as a share of the sound
    double peak = 0;
    double noiseOfSources = 0; ///< in the same window as `noise`
    std::vector<std::string> accounts;
    double peakOfSources = 0; ///< in the same window as `peak`
    std::set<std::uint32_t> quanta;
    std::set<std::uint32_t> judgedQuanta; ///< those heard where nothing excuses us
};

/// Judges recordings window by window, each overlapping half of the next so that none hides a step at its edge.
class Judge
{
  public:
    Judge(int rate, double limit) : m_fit(rate, tones, static_cast<std::size_t>(rate) / 4), m_limit(limit) {}

    void judge(const Recording &recording)
    {
        m_findings.jumps += recording.jumps();
        for (const RecordedCycle &cycle : recording.cycles)
            m_findings.quanta.insert(cycle.frames);
        for (const Stretch stretch : recording.unbroken()) {
            // A recording's beginning, too, may follow a jump: nobody heard what came before.
            const std::size_t excused = afterCycles(recording, stretch.begin);
            for (std::size_t at = stretch.begin; at + m_fit.frames() <= stretch.end; at += m_fit.frames() / 2)
                judgeWindow(recording, at, at < excused);
        }
    }

    const Findings &findings() const { return m_findings; }
    /// A part of the mix without a fault.
    const Samples &cleanMix() const { return m_cleanMix; }

  private:
    static std::size_t afterCycles(const Recording &recording, std::size_t jump)
    {
        const auto first = std::ranges::find(recording.cycles, jump, &RecordedCycle::start);
        const auto index = static_cast<std::size_t>(first - recording.cycles.begin()) + excusedCycles;
        return index < recording.cycles.size() ? recording.cycles[index].start : recording.frames();
    }

    SineResidue residue(const Recording &recording, std::size_t track, std::size_t at) const
    {
        return m_fit.residue(std::span(recording.tracks[track]).subspan(at, m_fit.frames()));
    }
    bool isBad(const SineResidue &residue) const { return residue.noise > m_limit || residue.peak > 10 * m_limit; }

    void judgeWindow(const Recording &recording, std::size_t at, bool isExcused)
    {
        ++m_findings.windows;
        const SineResidue leftSide = residue(recording, left, at);
        const SineResidue rightSide = residue(recording, right, at);
        const SineResidue &worse = leftSide.noise > rightSide.noise ? leftSide : rightSide;
        const bool isMixBad = isBad(leftSide) || isBad(rightSide);
        if (isMixBad && isExcused) {
            ++m_findings.xruns;
        } else if (isMixBad && isSourceBad(recording, at)) {
            ++m_findings.sources;
        } else {
            (isMixBad ? m_findings.ours : m_findings.clean) += 1;
            if (worse.noise > m_findings.noise) {
                m_findings.noise = worse.noise;
                m_findings.noiseOfSources = worstOfSources(recording, at, &SineResidue::noise);
            }
            if (const double peak = std::max(leftSide.peak, rightSide.peak); peak > m_findings.peak) {
                m_findings.peak = peak;
                m_findings.peakOfSources = worstOfSources(recording, at, &SineResidue::peak);
            }
            for (const RecordedCycle &cycle : cyclesIn(recording, at))
                m_findings.judgedQuanta.insert(cycle.frames);
            if (isMixBad)
                account(recording, at, worse);
            else
                m_cleanMix = recording.part(left, {at, at + m_fit.frames()});
        }
    }

    double worstOfSources(const Recording &recording, std::size_t at, double SineResidue::*figure) const
    {
        return std::max({residue(recording, microphone, at).*figure, residue(recording, firstApplication, at).*figure,
                         residue(recording, secondApplication, at).*figure});
    }

    /// Those that a window has a part of.
    std::vector<RecordedCycle> cyclesIn(const Recording &recording, std::size_t at) const
    {
        std::vector<RecordedCycle> cycles;
        std::ranges::copy_if(recording.cycles, std::back_inserter(cycles), [&](const RecordedCycle &cycle) {
            return cycle.start + cycle.frames > at && cycle.start < at + m_fit.frames();
        });
        return cycles;
    }

    bool isSourceBad(const Recording &recording, std::size_t at) const
    {
        return isBad(residue(recording, microphone, at)) || isBad(residue(recording, firstApplication, at)) ||
               isBad(residue(recording, secondApplication, at));
    }

    void account(const Recording &recording, std::size_t at, const SineResidue &residue)
    {
        std::string text = std::to_string(at) + " frames after the beginning, cycles of";
        for (const RecordedCycle &cycle : cyclesIn(recording, at)) {
            const std::string frames = " " + std::to_string(cycle.frames);
            if (!text.ends_with(frames))
                text += frames;
        }
        m_findings.accounts.push_back(text + ": noise " + std::to_string(decibels(residue.noise)) + " dB, peak " +
                                      std::to_string(decibels(residue.peak)) + " dB");
    }

    SineFit m_fit;
    double m_limit;
    Findings m_findings;
    Samples m_cleanMix;
};

/// Lets the server change the length of its cycles while it is listened to.
class Restless
{
  public:
    Restless(MixBed &bed, int rate) : m_bed(bed), m_rate(rate) {}
    ~Restless() { m_bed.session().set("clock.force-quantum", "0"); }
    Restless(const Restless &) = delete;
    Restless &operator=(const Restless &) = delete;

    void operator()()
    {
        m_bed.waitFor([] { return true; });
        if (Clock::now() < m_next)
            return;
        // Straight from 32 to 8192 frames the server's own clock jumps, whoever listens.
        const int quantum = quanta[m_turn++ % quanta.size()];
        m_bed.session().set("clock.force-quantum", std::to_string(quantum));
        // For longer than what is excused behind a jump.
        m_next = Clock::now() + std::chrono::milliseconds(700 + 1000 * (excusedCycles + 2) * quantum / m_rate);
    }

    static constexpr std::array quanta = {1024, 32, 256, 8192, 64, 2048, 128, 4096, 512};

  private:
    MixBed &m_bed;
    const int m_rate;
    std::size_t m_turn = 0;
    Clock::time_point m_next;
};

void print(const RateCase &rates, const Findings &found)
{
    std::printf("  %d Hz, %zu lengths of cycle, %zu of them without an excuse: noise %.1f dB (of its sources %.1f dB), "
                "peak %.1f dB (%.1f dB) in %zu windows; bad: %zu of ours, %zu of a source, %zu of %zu jumps of the "
                "clock\n",
                rates.graph, found.quanta.size(), found.judgedQuanta.size(), decibels(found.noise),
                decibels(found.noiseOfSources), decibels(found.peak), decibels(found.peakOfSources), found.windows,
                found.ours, found.sources, found.xruns, found.jumps);
    for (const std::string &account : found.accounts)
        std::printf("    %s\n", account.c_str());
    std::fflush(stdout);
}

/// Where a cycle is shorter than a millisecond a machine may miss so many that none goes without an excuse.
void expectAllToBeJudged(const Findings &found, int rate)
{
    for (const int quantum : Restless::quanta) {
        const bool isJudged = found.judgedQuanta.contains(static_cast<std::uint32_t>(quantum));
        EXPECT_TRUE(isJudged || 1000 * quantum < rate) << quantum << " frames";
    }
}

} // namespace

class Rates : public testing::TestWithParam<RateCase>
{
};

TEST_P(Rates, aSineFromEitherSideComesOutAsOneSine)
{
    const RateCase &rates = GetParam();
    const double limit = rates.graph == 48000 ? std::pow(10, -90.0 / 20) : std::pow(10, -80.0 / 20);
    const auto frames = static_cast<std::size_t>(rates.graph);
    MixBed bed(optionsFor(rates));
    const auto speaker = startMicrophone(bed.session(), rates.graph, voiceIn(rates.microphoneChannels));
    const auto other = playApplication(
        bed.session(),
        {.nodeName = "other", .rate = rates.applications[1], .channels = {"FL=tone:601:0.2", "FR=tone:601:0.2"}});
    bed.run();
    const std::string firstChannel = rates.microphoneChannels.substr(0, rates.microphoneChannels.find(' '));
    Recorder recorder(bed.session(), {"microphone:capture_" + firstChannel, applicationPort("player", "FL"),
                                      applicationPort("other", "FL"), bed.monitor("FL"), bed.monitor("FR")});
    bed.record(recorder, frames / 2);
    Restless quanta(bed, rates.graph);
    Judge judge(rates.graph, limit);
    const std::size_t seconds = isShort() ? 4 : 12;
    const auto end = Clock::now() + std::chrono::seconds(secondsWanted());
    do {
        const Recording recording = recorder.record(seconds * frames, [&] { quanta(); });
        ASSERT_EQ(recording.rate, rates.graph);
        judge.judge(recording);
    } while (Clock::now() < end);
    const Findings &found = judge.findings();
    print(rates, found);
    EXPECT_EQ(found.ours, 0U);
    if (isShort()) {
        EXPECT_GE(found.quanta.size(), 3U);
    } else {
        expectAllToBeJudged(found, rates.graph);
    }
    EXPECT_GT(found.clean, found.windows / 2) << "too little was heard to tell";
    const auto heard = toneAmplitudes(judge.cleanMix(), rates.graph, tones);
    for (std::size_t i = 0; i < tones.size(); ++i)
        EXPECT_LT(std::abs(decibels(heard[i] / amplitudes[i])), 0.1) << tones[i] << " Hz";
}

INSTANTIATE_TEST_SUITE_P(Graph, Rates,
                         testing::Values(RateCase{44100, "FL FR", {8000, 48000}},
                                         RateCase{48000, "MONO", {44100, 192000}},
                                         RateCase{88200, "FL FR RL RR", {11025, 96000}},
                                         RateCase{96000, "FL FR FC LFE RL RR SL SR", {16000, 88200}},
                                         RateCase{192000, "MONO", {22050, 32000}}),
                         [](const auto &info) { return std::to_string(info.param.graph); });

} // namespace tolvenary::session
