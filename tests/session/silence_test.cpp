#include "tests/session/mix_bed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

const std::string silentApplication =
    "App silent. Source app may be muted, paused, or blocked by Screen Recording permission.";
const std::string silentMicrophone =
    "Mic silent. Check System Settings → Sound → Input (must be your real mic, not BlackHole).";
const std::string silentBoth =
    "Started but no audio: mic=0, app=0. Check default Input device + Screen Recording permission.";

/// A pick that needs no player: something that runs, owns a stream and plays nothing that could be heard.
std::unique_ptr<ChildProcess> startListener(PrivateSession &session)
{
    auto listener = session.start({"pw-record", "--target=speakers", "/dev/null"});
    session.waitForGraph([&](const SoundGraph &graph) { return !graph.nodesOfProcess(listener->pid()).empty(); });
    return listener;
}

} // namespace

TEST(Silence, aSilentApplicationIsNamedAfterTwoSeconds)
{
    MixBed bed({.application = false});
    bed.player() = startListener(bed.session());
    bed.start();
    ASSERT_TRUE(bed.isRunning()) << bed.status();
    EXPECT_EQ(bed.status(), "Running. In Discord, set Input to BlackHole 2ch.");
    EXPECT_TRUE(bed.waitFor([&] { return bed.status().starts_with("Running → BlackHole 2ch  mic:"); }));
    EXPECT_TRUE(bed.waitFor([&] { return bed.status() == silentApplication; })) << bed.status();
    EXPECT_EQ(bed.mix().property("appFrames").toULongLong(), 0U);
    EXPECT_GT(bed.mix().property("micFrames").toULongLong(), 48000U);
}

TEST(Silence, whenTheApplicationBeginsTheRunningLineComesBack)
{
    MixBed bed({.application = false});
    bed.player() = startListener(bed.session());
    bed.start();
    ASSERT_TRUE(bed.waitFor([&] { return bed.status() == silentApplication; })) << bed.status();
    const auto player = playApplication(bed.session());
    EXPECT_TRUE(bed.waitFor([&] { return bed.status().starts_with("Running → BlackHole 2ch  mic:"); })) << bed.status();
    EXPECT_GT(bed.mix().property("appFrames").toULongLong(), 0U);
}

TEST(Silence, aMicrophoneWithoutASignalPathIsNamed)
{
    MixBed bed({.microphone = false});
    const auto microphone = startDeadMicrophone(bed.session());
    bed.start();
    ASSERT_TRUE(bed.isRunning()) << bed.status();
    EXPECT_TRUE(bed.waitFor([&] { return bed.status() == silentMicrophone; })) << bed.status();
    EXPECT_EQ(bed.mix().property("micFrames").toULongLong(), 0U);
    EXPECT_TRUE(bed.waitFor([&] { return bed.mix().appFrames() > 48000; }));
    EXPECT_EQ(bed.status(), silentMicrophone);
}

TEST(Silence, withNeitherBothAreNamed)
{
    MixBed bed({.microphone = false, .application = false});
    const auto microphone = startDeadMicrophone(bed.session());
    bed.player() = startListener(bed.session());
    bed.start();
    ASSERT_TRUE(bed.isRunning()) << bed.status();
    EXPECT_TRUE(bed.waitFor([&] { return bed.status() == silentBoth; })) << bed.status();
}

} // namespace tolvenary::session
