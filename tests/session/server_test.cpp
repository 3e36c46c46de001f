#include "tests/session/heartbeat.h"
#include "tests/session/listening.h"
#include "tests/session/support/process_state.h"

#include <QElapsedTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

namespace tolvenary::session
{

namespace
{

constexpr qint64 frozen = 200;

void setDescriptorLimit(pid_t process, std::size_t number)
{
    rlimit limit{};
    ASSERT_EQ(prlimit(process, RLIMIT_NOFILE, nullptr, &limit), 0);
    limit.rlim_cur = number;
    ASSERT_EQ(prlimit(process, RLIMIT_NOFILE, &limit, nullptr), 0);
}

/// The number that the server never gives twice, of the node that plays the mix; empty when there is none.
std::string serialOfTheMix()
{
    const SoundGraph graph = SoundGraph::read();
    const GraphNode *node = graph.node("com.tolvenary.output");
    return node != nullptr ? node->properties.at("object.serial") : "";
}

} // namespace

TEST(HungServer, isAnEmptyListAndAStatusTextWithinTwoSeconds)
{
    MixBed bed({.hangsAtLaunch = true});
    Heartbeat heartbeat;
    QElapsedTimer clock;
    clock.start();
    bed.launch();
    const qint64 taken = clock.elapsed();
    std::printf("  settled after %lld ms, longest pause %lld ms: %s\n", static_cast<long long>(taken),
                static_cast<long long>(heartbeat.longestPause()), bed.status().c_str());
    EXPECT_LT(taken, 2000);
    EXPECT_LT(heartbeat.longestPause(), frozen);
    EXPECT_TRUE(bed.mix().property("blackHoleDevices").toList().empty());
    EXPECT_THAT(bed.status(), testing::StartsWith("App list error: "));
    bed.session().resumeServer();
}

TEST(HungServer, thatAnswersAgainIsUsedAgain)
{
    MixBed bed({.hangsAtLaunch = true});
    bed.launch();
    bed.session().resumeServer();
    const auto deviceIsThere = [&] {
        bed.launch();
        return !bed.mix().property("blackHoleDevices").toList().empty();
    };
    EXPECT_TRUE(bed.waitFor(deviceIsThere));
    EXPECT_EQ(bed.start(), "Running. In Discord, set Input to BlackHole 2ch.");
}

TEST(HungServer, letsARunningMixBeStopped)
{
    MixBed bed;
    bed.run();
    bed.session().hangServer();
    QElapsedTimer clock;
    clock.start();
    bed.stop();
    std::printf("  stopped after %lld ms\n", static_cast<long long>(clock.elapsed()));
    EXPECT_LT(clock.elapsed(), 2000);
    EXPECT_FALSE(bed.isRunning());
    bed.session().resumeServer();
    EXPECT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return MixBed::nodesOfProgram(graph).empty(); }));
}

TEST(HungServer, makesAStartFailAndNotFreeze)
{
    MixBed bed;
    bed.launch();
    bed.mix().setProperty("selectedAppID", static_cast<int>(bed.player()->pid()));
    bed.session().hangServer();
    Heartbeat heartbeat;
    QElapsedTimer clock;
    clock.start();
    const std::string status = bed.pressStart();
    std::printf("  %s after %lld ms, longest pause %lld ms\n", status.c_str(), static_cast<long long>(clock.elapsed()),
                static_cast<long long>(heartbeat.longestPause()));
    EXPECT_THAT(status, testing::StartsWith("Start failed ["));
    EXPECT_LT(clock.elapsed(), 2500);
    EXPECT_LT(heartbeat.longestPause(), frozen);
    bed.session().resumeServer();
}

TEST(RestartedServer, theMixComesBackByItself)
{
    MixBed bed;
    bed.run();
    bed.unplugAll();
    bed.session().stopSoundServers();
    EXPECT_TRUE(bed.waitFor([&] { return bed.status() == "The sound server went away. Waiting for it to come back."; }))
        << bed.status();
    EXPECT_TRUE(bed.isRunning());
    bed.session().startSoundServers();
    bed.plugAll();
    const auto before = bed.mix().property("appFrames").toULongLong();
    ASSERT_TRUE(bed.waitFor([&] { return bed.mix().property("appFrames").toULongLong() > before + 24000; }))
        << bed.status();
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    bed.record(recorder, 9600);
    const Recording recording = bed.record(recorder, 24000);
    const auto heard = toneAmplitudes(recording.part(0, recording.longestUnbroken()), recording.rate, {997, 1499});
    std::printf("  microphone %.4f, application %.4f\n", heard[0], heard[1]);
    EXPECT_NEAR(heard[0], 0.25, 0.003);
    EXPECT_NEAR(heard[1], 0.2, 0.003);
}

/// Not by the server's end: what it sends carries descriptors, and there is no room for them.
TEST(BrokenConnection, isMadeAnewAndTheMixComesBackByItself)
{
    MixBed bed;
    const auto program = bed.session().start({TOLVENARY_MIX_RUNNER, std::to_string(bed.player()->pid())});
    ASSERT_TRUE(bed.waitFor([&] { return program->output().starts_with("Running"); })) << program->output();
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    ASSERT_TRUE(becomesHeard(bed, recorder, theWholeMix));
    const std::string before = serialOfTheMix();
    ASSERT_NE(before, "");

    setDescriptorLimit(program->pid(), ProcessState::of(program->pid()).descriptors);
    const auto more =
        bed.session().start({TOLVENARY_PLAYER, "--name", "more", "--streams", "8", "FL=silence", "FR=silence"});
    EXPECT_TRUE(bed.waitFor([&] { return serialOfTheMix() != before; })) << "the connection has not been given up";
    setDescriptorLimit(program->pid(), 1024);
    EXPECT_TRUE(becomesHeard(bed, recorder, theWholeMix));
    EXPECT_NE(serialOfTheMix(), before);
    EXPECT_TRUE(program->isRunning());
}

TEST(AbsentServer, isAStatusTextAndNoHarm)
{
    MixBed bed;
    bed.unplugAll();
    bed.session().stopSoundServers();
    QElapsedTimer clock;
    clock.start();
    bed.launch();
    EXPECT_LT(clock.elapsed(), 2000);
    EXPECT_TRUE(bed.mix().property("blackHoleDevices").toList().empty());
    EXPECT_THAT(bed.status(), testing::StartsWith("App list error: "));
}

} // namespace tolvenary::session
