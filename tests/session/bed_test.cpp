#include "tests/session/support/clicks.h"
#include "tests/session/support/recorder.h"
#include "tests/session/support/sound_players.h"
#include "tests/session/support/source_fit.h"
#include "tests/session/support/tone_level.h"
#include "tests/session/support/virtual_devices.h"
#include "tests/session/support/wait_until.h"

#include <array>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

// The bed that the other tests lie on: what it reports about the server's own pw-loopback, whose figures are known.

namespace tolvenary::session
{

namespace
{

using testing::Each;
using testing::IsEmpty;
using testing::SizeIs;

/// A mix of one source by the server's own means: microphone to device, nothing else.
std::unique_ptr<ChildProcess> startLoopback(PrivateSession &session, const std::string &to)
{
    auto loopback = session.start({"pw-loopback", "-c", "1", "-m", "[ MONO ]",
                                   "--capture-props={ node.name=loop-in node.autoconnect=false }",
                                   "--playback-props={ node.name=loop-out node.autoconnect=false }"});
    link(session, "microphone:capture_MONO", "loop-in:input_MONO");
    link(session, "loop-out:output_MONO", to + ":playback_FL");
    return loopback;
}

} // namespace

TEST(SessionBed, aLoopbackToANullSinkAddsNoFrame)
{
    PrivateSession session;
    const auto device = makeBlackHole(session, DeviceKind::nullSink);
    const auto microphone = makeMicrophone(session);
    const auto voice = speakInto(session, "microphone", {"MONO=clicks:4801:0.5"});
    const auto loopback = startLoopback(session, "blackhole_2ch");
    Recorder recorder(session, {"microphone:capture_MONO", deviceMonitor(DeviceKind::nullSink, "FL")});
    const Recording recording = recorder.record(96000);
    const Stretch whole = recording.longestUnbroken();
    const auto delays =
        clickDelays(findClicks(recording.part(0, whole), 0.2F), findClicks(recording.part(1, whole), 0.2F), 2400);
    std::printf("pw-loopback: %zu clicks, %ld frames late, %zu jumps of the clock\n", delays.size(),
                delays.empty() ? -1 : delays.front(), recording.jumps());
    EXPECT_THAT(delays, SizeIs(testing::Ge(5U)));
    EXPECT_THAT(delays, Each(0));
}

TEST(SessionBed, aLoopbackIsWithoutGapAndAtFullLevel)
{
    PrivateSession session;
    const auto device = makeBlackHole(session, DeviceKind::nullSink);
    const auto microphone = makeMicrophone(session);
    const auto voice = speakInto(session, "microphone", {"MONO=tone:997:0.25"});
    const auto loopback = startLoopback(session, "blackhole_2ch");
    Recorder recorder(session, {"microphone:capture_MONO", deviceMonitor(DeviceKind::nullSink, "FL")});
    recorder.record(9600);
    // A loopback that the machine wakes too late leaves a gap without a jump of the clock: listened to again.
    SourceFit fit;
    for (int attempt = 0; attempt < 8; ++attempt) {
        const Recording recording = recorder.record(96000);
        const Stretch whole = recording.longestUnbroken();
        fit = fitSources(recording.part(1, whole), {recording.part(0, whole)});
        if (fit.gaps.empty() && fit.largestResidue < 1e-5)
            break;
    }
    EXPECT_NEAR(fit.gains.front(), 1.0, 1e-5);
    EXPECT_LT(fit.largestResidue, 1e-5);
    EXPECT_THAT(fit.gaps, IsEmpty());
}

TEST(SessionBed, theShippedDeviceIsThereAndNeverTheDefault)
{
    PrivateSession session({.pulse = true, .shippedDevice = true});
    ASSERT_TRUE(session.waitForGraph([](const SoundGraph &graph) {
        return graph.port("blackhole_2ch:playback_FR") != nullptr &&
               graph.port("blackhole_2ch.source:capture_FR") != nullptr;
    }));
    const auto microphone = makeMicrophone(session);
    EXPECT_TRUE(session.waitForGraph(
        [](const SoundGraph &graph) { return graph.defaultNode("default.audio.source") == "microphone"; }));
    EXPECT_EQ(SoundGraph::read().defaultNode("default.audio.sink"), "speakers");
    EXPECT_THAT(runToEnd({"pactl", "list", "short", "sources"}), testing::HasSubstr("blackhole_2ch.source"));
}

TEST(SessionBed, anApplicationPlaysIntoTheSpeakers)
{
    PrivateSession session;
    const auto application = playApplication(session, {.channels = {"FL=tone:700:0.3", "FR=tone:900:0.1"}});
    Recorder recorder(session, {"speakers:monitor_FL", "speakers:monitor_FR"});
    // A player that the machine wakes too late leaves a gap, which is no jump of the clock: listened to again.
    std::array<double, 2> heard{};
    const auto listen = [&] {
        const Recording recording = recorder.record(9600);
        const Stretch whole = recording.longestUnbroken();
        heard = {toneAmplitudes(recording.part(0, whole), recording.rate, {700}).front(),
                 toneAmplitudes(recording.part(1, whole), recording.rate, {900}).front()};
        return std::abs(heard[0] - 0.3) < 1e-4 && std::abs(heard[1] - 0.1) < 1e-4;
    };
    EXPECT_TRUE(waitUntil(listen, std::chrono::seconds(20))) << heard[0] << " and " << heard[1];
    EXPECT_EQ(SoundGraph::read().nodesOfProcess(application->pid()).size(), 1U);
}

TEST(SessionBed, hasNoDeviceButThoseThatATestMakes)
{
    const PrivateSession session;
    std::vector<std::string> devices;
    for (const GraphNode &node : SoundGraph::read().nodes) {
        const auto mediaClass = node.properties.find("media.class");
        if (mediaClass != node.properties.end() && mediaClass->second.starts_with("Audio/"))
            devices.push_back(node.name);
    }
    EXPECT_THAT(devices, testing::ElementsAre("speakers"));
}

TEST(SessionBed, anUnpluggedDeviceIsGone)
{
    PrivateSession session;
    const auto device = makeBlackHole(session);
    ASSERT_NE(SoundGraph::read().node("blackhole_2ch"), nullptr);
    device->remove();
    EXPECT_TRUE(session.waitForGraph([](const SoundGraph &graph) { return graph.node("blackhole_2ch") == nullptr; }));
}

TEST(SessionBed, theServersCanBeStoppedAndStartedAgain)
{
    PrivateSession session;
    session.stopSoundServers();
    EXPECT_THROW(SoundGraph::read(), std::runtime_error);
    session.startSoundServers();
    EXPECT_NE(SoundGraph::read().node("speakers"), nullptr);
}

} // namespace tolvenary::session
