#include "tests/session/listening.h"
#include "tests/session/support/wait_until.h"

#include <csignal>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

constexpr const char *choice = "default.configured.audio.source";
constexpr const char *device = "blackhole_2ch.source";

/// A client's question is behind all that the server was sent before.
void letServerCatchUp()
{
    runToEnd({"pw-link", "--output"});
}

/// From now on the server tells no change of the defaults to those that know them already: it does not while a program
/// begins to read them, and this one dies over it.
void silenceDefaults(PrivateSession &session)
{
    session.hangSessionManager();
    const auto reader = session.start({"pw-metadata", "0"});
    ASSERT_TRUE(waitUntil([&] { return reader->output().find("Found \"default\"") != std::string::npos; },
                          std::chrono::seconds(8)))
        << reader->output();
    letServerCatchUp();
    reader->signal(SIGKILL);
    ASSERT_TRUE(reader->waitForEnd(std::chrono::seconds(5)));
    letServerCatchUp();
    session.resumeSessionManager();
}

} // namespace

TEST(MissedDefault, isFollowedFromMicrophoneToMicrophone)
{
    MixBed bed;
    bed.session().chooseDefault(choice, "microphone");
    const auto other = makeMicrophone(bed.session(), "MONO", "other-microphone");
    const auto otherVoice = speakInto(bed.session(), "other-microphone", {"MONO=tone:600:0.3"});
    bed.run();
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    ASSERT_TRUE(becomesHeard(bed, recorder, theWholeMix));
    silenceDefaults(bed.session());
    for (int round = 0; round < 2; ++round) {
        bed.session().chooseDefault(choice, "other-microphone");
        EXPECT_TRUE(becomesHeard(bed, recorder, {0, 0.3, 0.2})) << round;
        bed.session().chooseDefault(choice, "microphone");
        EXPECT_TRUE(becomesHeard(bed, recorder, theWholeMix)) << round;
    }
}

TEST(MissedDefault, isNamedAndNotMixedInWhereItIsTheDeviceItself)
{
    MixBed bed;
    bed.run();
    silenceDefaults(bed.session());
    bed.session().chooseDefault(choice, device);
    EXPECT_TRUE(statusBecomes(bed, "No microphone input available.")) << bed.status();
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    EXPECT_TRUE(becomesHeard(bed, recorder, {0, 0, 0.2}));
    bed.session().chooseDefault(choice, "microphone");
    EXPECT_TRUE(becomesHeard(bed, recorder, theWholeMix));
}

TEST(MissedDefault, isFoundAtStartWhereThereWasNoMicrophoneBefore)
{
    MixBed bed({.microphone = false});
    bed.launch();
    silenceDefaults(bed.session());
    bed.microphone() = makeMicrophone(bed.session());
    bed.voice() = speakInto(bed.session(), "microphone", {"MONO=tone:997:0.25"});
    ASSERT_TRUE(bed.waitForGraph(
        [](const SoundGraph &graph) { return graph.defaultNode("default.audio.source") == "microphone"; }));
    bed.start();
    ASSERT_TRUE(bed.isRunning()) << bed.status();
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    EXPECT_TRUE(becomesHeard(bed, recorder, theWholeMix));
}

} // namespace tolvenary::session
