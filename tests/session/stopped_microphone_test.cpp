#include "tests/session/listening.h"

#include <csignal>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

const std::string noAudio =
    "Started but no audio: mic=0, app=0. Check default Input device + Screen Recording permission.";

constexpr const char *choice = "default.configured.audio.source";

/// A bed whose default source is a program that was stopped before Start. There is another microphone, linked before:
/// behind a link that hangs, some servers make no more.
class StoppedMicrophone : public testing::Test
{
  protected:
    MixBed m_bed{{.microphone = false}};
    std::unique_ptr<ChildProcess> m_stopped = startDeadMicrophone(m_bed.session());
    std::unique_ptr<VirtualDevice> m_other = makeMicrophone(m_bed.session());
    std::unique_ptr<ChildProcess> m_voice = speakInto(m_bed.session(), "microphone", {"MONO=tone:997:0.25"});

    void SetUp() override
    {
        m_bed.session().chooseDefault(choice, "dead-microphone");
        ASSERT_TRUE(m_bed.waitForGraph(
            [](const SoundGraph &graph) { return graph.defaultNode("default.audio.source") == "dead-microphone"; }));
        m_bed.launch();
        m_stopped->signal(SIGSTOP);
        const std::string status = m_bed.start();
        EXPECT_EQ(status, "Running. In Discord, set Input to BlackHole 2ch.");
        EXPECT_TRUE(statusBecomes(m_bed, noAudio)) << m_bed.status();
    }
    void TearDown() override { m_stopped->signal(SIGCONT); }
};

} // namespace

// The server makes links one after the other: behind one that its program does not answer, all wait.
TEST_F(StoppedMicrophone, isNamedAndTheRestIsHeardWhenItGoesOn)
{
    m_stopped->signal(SIGCONT);
    EXPECT_TRUE(statusBecomes(m_bed, "Mic silent.")) << m_bed.status();
    EXPECT_GT(m_bed.mix().appFrames(), 0U);
}

TEST_F(StoppedMicrophone, isNamedAndTheWholeMixIsHeardWithAnother)
{
    m_bed.session().chooseDefault(choice, "microphone");
    EXPECT_TRUE(statusBecomes(m_bed, "Running → ")) << m_bed.status();
    Recorder recorder(m_bed.session(), {m_bed.monitor("FL")});
    EXPECT_TRUE(becomesHeard(m_bed, recorder, theWholeMix));
}

TEST_F(StoppedMicrophone, isNamedAndTheMixCanBeStopped)
{
    m_bed.stop();
    EXPECT_FALSE(m_bed.isRunning());
    EXPECT_TRUE(m_bed.waitForGraph([](const SoundGraph &graph) { return MixBed::nodesOfProgram(graph).empty(); }));
}

} // namespace tolvenary::session
