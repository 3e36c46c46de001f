#include "tests/session/mix_bed.h"
#include "tests/session/support/process_state.h"
#include "tests/session/support/steady_gaps.h"
#include "tests/session/support/tone_level.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

using namespace std::chrono_literals;

constexpr std::size_t second = 48000;

/// All that is mixed is steady: what is lost of it is a jump. A visitor is too soft to be taken for one.
MixBedOptions steadyOptions()
{
    MixBedOptions options{.voice = {"MONO=steady:0.25"}, .urgent = true};
    options.player.channels = {"FL=steady:0.3", "FR=steady:0.3"};
    return options;
}

constexpr float gapStep = 0.1F;

/// What goes in, and what comes out of the device.
std::vector<std::string> ports(const MixBed &bed)
{
    return {"microphone:capture_MONO", applicationPort("player", "FL"), bed.monitor("FL"), bed.monitor("FR")};
}
constexpr std::size_t firstMix = 2;

void print(const char *what, const SteadyGaps &gaps)
{
    std::printf("  %s: %zu gaps of ours, %zu of a source, %zu of %zu jumps of the clock\n", what, gaps.ours,
                gaps.sources, gaps.xruns, gaps.jumps);
    for (const std::string &account : gaps.accounts)
        std::printf("    %s\n", account.c_str());
}

struct ObjectCounts {
    std::size_t clients = 0;
    std::size_t nodes = 0;
    std::size_t ports = 0;
    std::size_t links = 0;

    explicit ObjectCounts(const SoundGraph &graph)
        : clients(graph.clients.size()), nodes(graph.nodes.size()), ports(graph.ports.size()), links(graph.links.size())
    {
    }
    friend bool operator==(const ObjectCounts &, const ObjectCounts &) = default;
    friend std::ostream &operator<<(std::ostream &out, const ObjectCounts &counts)
    {
        return out << counts.clients << " clients, " << counts.nodes << " nodes, " << counts.ports << " ports, "
                   << counts.links << " links";
    }
};

/// Somebody plays tones beside all else and is not waited for: nobody knows how he will behave.
std::unique_ptr<ChildProcess> startStranger(MixBed &bed, Arguments arguments)
{
    Arguments command = {TOLVENARY_PLAYER};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return bed.session().start(command);
}

bool isLinked(const SoundGraph &graph, pid_t process)
{
    const auto nodes = graph.nodesOfProcess(process);
    return std::ranges::any_of(graph.links, [&](const GraphLink &link) {
        return link.state == "active" && !nodes.empty() && link.outputNode == nodes.front().id;
    });
}

using Amplitudes = std::vector<double>;

/// How loud these tones are on one side of the device.
Amplitudes amplitudes(const Recording &recording, std::size_t track, const std::vector<double> &tones)
{
    return toneAmplitudes(recording.part(track, recording.longestUnbroken()), recording.rate, tones);
}

bool areNear(const Amplitudes &heard, const Amplitudes &wanted)
{
    return std::ranges::equal(heard, wanted, [](double a, double b) { return std::abs(a - b) < 0.001; });
}

} // namespace

TEST(Strangers, thatComeAndGoLeaveNothingBehind)
{
    const bool isLong = std::getenv("TOLVENARY_LONG_TESTS") != nullptr;
    const int visits = isLong ? 2000 : 120;
    MixBed bed(steadyOptions());
    const auto program = bed.session().start({TOLVENARY_MIX_RUNNER, std::to_string(bed.player()->pid())});
    ASSERT_TRUE(bed.waitFor([&] { return program->output().starts_with("Running"); })) << program->output();
    Recorder recorder(bed.session(), ports(bed));
    const auto receive = [&](int count) {
        const auto guests = startStranger(
            bed, {"--visits", std::to_string(count), "--name", "visitor", "FL=tone:700:0.05", "FR=tone:900:0.05"});
        SteadyGaps gaps;
        while (guests->isRunning())
            gaps += findSteadyGaps(bed.record(recorder, 2 * second), firstMix, gapStep);
        const std::string all = std::to_string(count) + " of " + std::to_string(count) + " visits\n";
        EXPECT_EQ(guests->output(), all);
        return gaps;
    };
    const auto countWhenAllHaveGone = [&] {
        ObjectCounts counts{SoundGraph()};
        EXPECT_TRUE(bed.waitForGraph([&](const SoundGraph &graph) {
            counts = ObjectCounts(graph);
            return graph.node("visitor") == nullptr;
        }));
        bed.record(recorder, second); // the program hears of it a moment later
        return counts;
    };

    receive(30); // what the first ones cost is no leak
    const ObjectCounts objects = countWhenAllHaveGone();
    const ProcessState before = ProcessState::of(program->pid());
    const SteadyGaps gaps = receive(visits);
    EXPECT_EQ(countWhenAllHaveGone(), objects);
    const ProcessState after = ProcessState::of(program->pid());
    std::printf("  %d visits: %ld to %ld kB, %zu to %zu descriptors, %zu to %zu threads\n", visits, before.kilobytes,
                after.kilobytes, before.descriptors, after.descriptors, before.threads, after.threads);
    print("the others meanwhile", gaps);
    EXPECT_EQ(gaps.ours, 0U);
    EXPECT_LE(after.descriptors, before.descriptors);
    EXPECT_LE(after.threads, before.threads);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // which keep what is freed
    EXPECT_LT(after.kilobytes, before.kilobytes + 512) << "two hundred bytes a visit would be more";
#endif
}

TEST(Stranger, withSixtyFourChannelsIsHeardOnBothSides)
{
    MixBed bed({.voice = {"MONO=silence"}, .urgent = true});
    bed.run();
    Arguments arguments = {"--name", "crowd", "--keep-channels"};
    for (int channel = 0; channel < 64; ++channel)
        arguments.push_back("AUX" + std::to_string(channel) + "=silence");
    arguments[3] = "AUX0=tone:500:0.1";
    arguments[4] = "AUX1=tone:700:0.1";
    arguments[65] = "AUX62=tone:900:0.1";
    arguments[66] = "AUX63=tone:1100:0.1";
    const auto crowd = startStranger(bed, arguments);
    Recorder recorder(bed.session(), {bed.monitor("FL"), bed.monitor("FR")});
    const std::vector<double> tones = {500, 700, 900, 1100, 1499};
    EXPECT_TRUE(bed.waitFor([&] {
        const Recording heard = bed.record(recorder, second / 4);
        return areNear(amplitudes(heard, 0, tones), {0.1, 0, 0.1, 0, 0.2}) &&
               areNear(amplitudes(heard, 1, tones), {0, 0.1, 0, 0.1, 0.2});
    })) << crowd->output();
    const SoundGraph graph = SoundGraph::read();
    EXPECT_EQ(graph.portsOf(graph.node("crowd")->id).size(), 64U);
}

TEST(Stranger, thatChangesItsFormatWhileItPlaysIsHeardInEach)
{
    MixBed bed(steadyOptions());
    bed.run();
    const auto changing =
        startStranger(bed, {"--name", "changing", "--keep-channels", "FL=tone:700:0.05", "FR=tone:900:0.05"});
    ASSERT_TRUE(bed.waitForGraph([&](const SoundGraph &graph) { return isLinked(graph, changing->pid()); }));
    Recorder recorder(bed.session(), ports(bed));
    SteadyGaps gaps;
    const auto becomesHeard = [&](const Amplitudes &left, const Amplitudes &right) {
        return bed.waitFor([&] {
            const Recording heard = bed.record(recorder, second / 4);
            gaps += findSteadyGaps(heard, firstMix, gapStep);
            return areNear(amplitudes(heard, 2, {700, 900}), left) && areNear(amplitudes(heard, 3, {700, 900}), right);
        });
    };
    const auto changeTo = [&](std::size_t channels) {
        recorder.begin(second);
        changing->signal(SIGUSR1);
        EXPECT_TRUE(bed.waitForGraph([&](const SoundGraph &graph) {
            const GraphNode *stranger = graph.node("changing");
            return stranger != nullptr && graph.portsOf(stranger->id).size() == channels;
        })) << channels;
        gaps += findSteadyGaps(recorder.finish(), firstMix, gapStep);
    };
    EXPECT_TRUE(becomesHeard({0.05, 0}, {0, 0.05}));
    changeTo(1);
    EXPECT_TRUE(becomesHeard({0.05, 0}, {0.05, 0})) << "mono is heard on both sides";
    changeTo(6);
    // Left, right, centre, none, left, right; what is not in front is 3 dB down.
    const double surround = 0.05 / std::sqrt(2.0);
    EXPECT_TRUE(becomesHeard({0.05 + 2 * surround, 0}, {surround, 0.05 + surround}));
    changeTo(2);
    EXPECT_TRUE(becomesHeard({0.05, 0}, {0, 0.05}));
    print("the others meanwhile", gaps);
    EXPECT_EQ(gaps.ours, 0U);
}

TEST(Stranger, thatIsKilledInTheMiddleOfACycleTakesNothingWithIt)
{
    MixBed bed(steadyOptions());
    bed.run();
    Recorder recorder(bed.session(), ports(bed));
    bed.record(recorder, second);
    const ObjectCounts objects{SoundGraph::read()};
    const ProcessState before = ProcessState::of(getpid());
    constexpr int wanted = 10;
    int deaths = 0;
    SteadyGaps gaps;
    for (int attempt = 0; attempt < 2 * wanted && deaths < wanted; ++attempt) {
        const auto doomed = startStranger(bed, {"--name", "doomed", "--die", "FL=tone:700:0.05", "FR=tone:900:0.05"});
        recorder.begin(2 * second);
        EXPECT_TRUE(bed.waitFor([&] { return !doomed->isRunning(); }));
        deaths += recorder.isDone() ? 0 : 1; // one that took longer was not heard
        gaps += findSteadyGaps(recorder.finish(), firstMix, gapStep);
    }
    EXPECT_EQ(deaths, wanted);
    print("at ten deaths", gaps);
    EXPECT_EQ(gaps.ours, 0U);
    EXPECT_LT(gaps.xruns, wanted / 2U) << "the jumps of the clock are heard";
    EXPECT_EQ(findSteadyGaps(bed.record(recorder, second), firstMix, gapStep).ours, 0U) << "afterwards";
    ObjectCounts counts{SoundGraph()};
    EXPECT_TRUE(bed.waitForGraph([&](const SoundGraph &graph) { return (counts = ObjectCounts(graph)) == objects; }))
        << counts << ", not " << objects;
    EXPECT_LE(ProcessState::of(getpid()).descriptors, before.descriptors);
    EXPECT_EQ(bed.status().substr(0, 7), "Running");
}

/// Alone at the port for the centre: what several play at one port, the server's library adds up first, and checks.
TEST(Stranger, thatLiesAboutWhereItsSamplesAreIsNotHeardAndTheOthersAre)
{
    MixBed bed({.urgent = true});
    const auto program = bed.session().start({TOLVENARY_MIX_RUNNER, std::to_string(bed.player()->pid())});
    ASSERT_TRUE(bed.waitFor([&] { return program->output().starts_with("Running"); })) << program->output();
    const auto liar = startStranger(bed, {"--lie", "--name", "liar", "FC=tone:700:0.1", "LFE=silence"});
    Recorder recorder(bed.session(), {bed.monitor("FL"), bed.monitor("FR")});
    Amplitudes left;
    Amplitudes right;
    const auto isLiarHeard = [&](bool wanted) {
        const double level = wanted ? 0.1 / std::sqrt(2.0) : 0;
        return bed.waitFor([&] {
            const Recording heard = bed.record(recorder, second / 4);
            left = amplitudes(heard, 0, {997, 1499, 700});
            right = amplitudes(heard, 1, {997, 1499, 700});
            return !program->isRunning() || (areNear(left, {0.25, 0.2, level}) && areNear(right, {0.25, 0.2, level}));
        });
    };
    std::string told;
    const auto nowTells = [&](const std::string &story) {
        told += story + "\n";
        liar->signal(SIGUSR1);
        return bed.waitFor([&] { return liar->output() == told; });
    };
    ASSERT_TRUE(isLiarHeard(true)) << "the truth: " << testing::PrintToString(left);
    for (const char *lie : {"far away", "just behind the end", "before the beginning", "a single sample"}) {
        ASSERT_TRUE(nowTells(lie)) << liar->output();
        EXPECT_TRUE(isLiarHeard(false)) << lie << ": " << testing::PrintToString(left) << testing::PrintToString(right);
        ASSERT_TRUE(program->isRunning()) << lie;
    }
    ASSERT_TRUE(nowTells("the truth")) << liar->output();
    EXPECT_TRUE(isLiarHeard(true)) << testing::PrintToString(left);
    EXPECT_TRUE(program->isRunning());
}

TEST(Stranger, thatIsADeviceWithRoomForAShortCycleIsPlayedIntoInShortCyclesAndNotBeyondItsEnd)
{
    MixBed bed({.device = false, .urgent = true});
    const auto device = startStranger(
        bed, {"--short", "--name", "short", "--application", "BlackHole short", "FL=silence", "FR=silence"});
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return graph.port("short:playback_FR") != nullptr; }));
    bed.session().set("clock.force-quantum", "8192");
    const auto program = bed.session().start({TOLVENARY_MIX_RUNNER, std::to_string(bed.player()->pid())});
    ASSERT_TRUE(bed.waitFor([&] { return program->output().starts_with("Running"); })) << program->output();
    std::string told;
    const auto nowTells = [&](const std::string &story) {
        told += story + "\n";
        device->signal(SIGUSR1);
        return bed.waitFor([&] { return device->output() == told; });
    };
    Recorder recorder(bed.session(), {"microphone:capture_MONO"});
    bed.record(recorder, 2 * second);
    ASSERT_TRUE(program->isRunning()) << "in long cycles";
    EXPECT_TRUE(nowTells("nothing")) << device->output();
    bed.session().set("clock.force-quantum", "128");
    bed.record(recorder, 2 * second);
    ASSERT_TRUE(program->isRunning()) << "in short cycles";
    EXPECT_TRUE(nowTells("heard")) << device->output();
}

TEST(Strangers, whateverTheirNamesAreHeardAndListed)
{
    MixBed bed({.voice = {"MONO=silence"}, .urgent = true});
    bed.run();
    const std::string longName(10000, 'x');
    const std::string noText = "caf\xE9 \xFF\xFE\x80";
    const auto nameless = startStranger(bed, {"--name", "", "--application", "", "FL=tone:500:0.1", "FR=silence"});
    const auto verbose =
        startStranger(bed, {"--name", longName, "--application", longName, "FL=tone:700:0.1", "FR=silence"});
    const auto foreign =
        startStranger(bed, {"--name", noText, "--application", noText, "FL=tone:900:0.1", "FR=silence"});
    Recorder recorder(bed.session(), {bed.monitor("FL"), bed.monitor("FR")});
    const std::vector<double> tones = {500, 700, 900, 1499};
    EXPECT_TRUE(bed.waitFor([&] {
        const Recording heard = bed.record(recorder, second / 4);
        return areNear(amplitudes(heard, 0, tones), {0.1, 0.1, 0.1, 0.2}) &&
               areNear(amplitudes(heard, 1, tones), {0, 0, 0, 0.2});
    }));
    bed.launch();
    std::map<int, QString> names;
    for (const QVariant &row : bed.mix().property("availableApps").toList())
        names.emplace(row.toMap()["processID"].toInt(), row.toMap()["applicationName"].toString());
    EXPECT_EQ(names[bed.player()->pid()], "Player");
    EXPECT_FALSE(names.contains(nameless->pid())) << "without a name there is nothing to pick";
    EXPECT_EQ(names[verbose->pid()], QString::fromStdString(longName));
    EXPECT_EQ(names[foreign->pid()], QString::fromUtf8("caf\uFFFD \uFFFD\uFFFD\uFFFD"));
}

} // namespace tolvenary::session
