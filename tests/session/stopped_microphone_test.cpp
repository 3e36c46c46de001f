#include "tests/session/listening.h"

#include <csignal>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

constexpr const char *choice = "default.configured.audio.source";
constexpr Heard theApplication{0, 0, 0.2};

bool isLinkedToUs(const SoundGraph &graph, const std::string &microphone)
{
    const GraphNode *source = graph.node(microphone);
    const auto ours = MixBed::nodesOfProgram(graph);
    return source != nullptr && std::ranges::any_of(graph.links, [&](const GraphLink &link) {
               return link.outputNode == source->id &&
                      std::ranges::find(ours, link.inputNode, &GraphNode::id) != ours.end();
           });
}

/// A bed whose default source is a program that was stopped before Start. There is another microphone, linked before:
/// behind a link that hangs, some servers make no more.
class StoppedMicrophone : public testing::Test
{
  protected:
    MixBed m_bed{{.microphone = false}};
    std::unique_ptr<ChildProcess> m_stopped = startMicrophone(m_bed.session(), 48000, {"MONO=tone:997:0.25"});
    std::unique_ptr<VirtualDevice> m_other = makeMicrophone(m_bed.session(), "MONO", "other-microphone");
    std::unique_ptr<ChildProcess> m_voice = speakInto(m_bed.session(), "other-microphone", {"MONO=tone:600:0.3"});

    void SetUp() override
    {
        m_bed.session().chooseDefault(choice, "microphone");
        ASSERT_TRUE(m_bed.waitForGraph(
            [](const SoundGraph &graph) { return graph.defaultNode("default.audio.source") == "microphone"; }));
        m_bed.launch();
        m_stopped->signal(SIGSTOP);
        const std::string status = m_bed.start();
        EXPECT_EQ(status, "Running. In Discord, set Input to BlackHole 2ch.");
        ASSERT_TRUE(m_bed.isRunning());
    }
    void TearDown() override { m_stopped->signal(SIGCONT); }
};

} // namespace

// The server makes links one after the other: behind one that its program does not answer, all wait.
TEST_F(StoppedMicrophone, isNamedAndTheApplicationsAreHeardWithoutIt)
{
    EXPECT_TRUE(statusBecomes(m_bed, "Mic silent.")) << m_bed.status();
    EXPECT_EQ(m_bed.mix().micFrames(), 0U);
    Recorder recorder(m_bed.session(), {m_bed.monitor("FL")});
    EXPECT_TRUE(becomesHeard(m_bed, recorder, theApplication));
}

TEST_F(StoppedMicrophone, isTriedAgainWhileTheApplicationsAreHeard)
{
    ASSERT_TRUE(statusBecomes(m_bed, "Mic silent.")) << m_bed.status();
    Recorder recorder(m_bed.session(), {m_bed.monitor("FL")});
    ASSERT_TRUE(becomesHeard(m_bed, recorder, theApplication));
    const auto isTried = [](const SoundGraph &graph) { return isLinkedToUs(graph, "microphone"); };
    for (int attempt = 0; attempt < 2; ++attempt) {
        ASSERT_TRUE(m_bed.waitForGraph(isTried)) << "attempt " << attempt;
        EXPECT_TRUE(isLevel(listen(m_bed, recorder).application, theApplication.application)) << "attempt " << attempt;
        ASSERT_TRUE(m_bed.waitForGraph(std::not_fn(isTried))) << "attempt " << attempt;
    }
}

TEST_F(StoppedMicrophone, isHeardWhenItGoesOn)
{
    EXPECT_TRUE(statusBecomes(m_bed, "Mic silent.")) << m_bed.status();
    m_stopped->signal(SIGCONT);
    Recorder recorder(m_bed.session(), {m_bed.monitor("FL")});
    EXPECT_TRUE(becomesHeard(m_bed, recorder, theWholeMix));
    EXPECT_TRUE(statusBecomes(m_bed, "Running → ")) << m_bed.status();
}

TEST_F(StoppedMicrophone, isNotWaitedForWhenAnotherIsChosen)
{
    m_bed.session().chooseDefault(choice, "other-microphone");
    EXPECT_TRUE(statusBecomes(m_bed, "Running → ")) << m_bed.status();
    Recorder recorder(m_bed.session(), {m_bed.monitor("FL")});
    EXPECT_TRUE(becomesHeard(m_bed, recorder, {0, 0.3, 0.2}));
}

TEST_F(StoppedMicrophone, givesWayToAnotherThatIsChosenLater)
{
    EXPECT_TRUE(statusBecomes(m_bed, "Mic silent.")) << m_bed.status();
    m_bed.session().chooseDefault(choice, "other-microphone");
    Recorder recorder(m_bed.session(), {m_bed.monitor("FL")});
    EXPECT_TRUE(becomesHeard(m_bed, recorder, {0, 0.3, 0.2}));
}

TEST_F(StoppedMicrophone, isNoReasonNotToStop)
{
    for (const bool isHeld : {false, true}) {
        SCOPED_TRACE(isHeld ? "held back" : "waited for");
        if (isHeld) {
            m_bed.pressStart();
            EXPECT_TRUE(statusBecomes(m_bed, "Mic silent.")) << m_bed.status();
        }
        m_bed.stop();
        EXPECT_FALSE(m_bed.isRunning());
        EXPECT_TRUE(m_bed.waitForGraph([](const SoundGraph &graph) { return MixBed::nodesOfProgram(graph).empty(); }));
    }
}

} // namespace tolvenary::session
