#include "tests/window/real/window_test.h"

#include <csignal>

// The mix as a user runs it, and what is left of it when the program goes.

namespace tolvenary::session
{

namespace
{

constexpr int endedWell = 0;

} // namespace

class WindowMix : public WindowTest
{
  protected:
    /// Status as waitpid() gives it; empty when the program stays.
    std::optional<int> howItEnds() { return program().process().waitForEnd(std::chrono::seconds(15)); }
};

TEST_F(WindowMix, runsFromStartToStop)
{
    launch();
    pick("App", Desktop::musicProgram);
    clickOn("Start", "push button");
    ASSERT_TRUE(eventually([this] { return countsFrames(); }));
    EXPECT_TRUE(isThere("Stop", "push button"));
    const auto before = std::pair(program().microphoneFrames(), program().applicationFrames());
    EXPECT_TRUE(eventually([&] {
        return program().microphoneFrames() > before.first && program().applicationFrames() > before.second;
    })) << "the counts stand still";
    EXPECT_EQ(SoundGraph::read().nodesOfProcess(program().pid()).size(), 4U) << "three nodes, and the microphone sign";

    clickOn("Stop", "push button");
    EXPECT_TRUE(eventually([this] { return isThere("Stopped", "notification"); }));
    EXPECT_TRUE(isThere("Start", "push button"));
    EXPECT_TRUE(leavesNoSound());
}

TEST_F(WindowMix, withoutAPickedApplicationItAsksForOne)
{
    launch();
    clickOn("Start", "push button");
    EXPECT_TRUE(eventually([this] { return isThere("Pick an app first.", "notification"); }));
    EXPECT_TRUE(leavesNoSound());
}

TEST_F(WindowMix, endsWithTheCloseButton)
{
    launch();
    startMix();
    clickOn("Close");
    EXPECT_EQ(howItEnds(), endedWell);
    EXPECT_TRUE(leavesNoSound());
}

TEST_F(WindowMix, endsWithTheWindowManagersClose)
{
    launch();
    startMix();
    // The window manager closes what has the focus by then; on a busy machine that may come late.
    EXPECT_TRUE(eventually([this] {
        window().activate();
        hands.keys({"alt+F4"});
        return program().process().waitForEnd(std::chrono::seconds(5)).has_value();
    }));
    EXPECT_EQ(howItEnds(), endedWell);
    EXPECT_TRUE(leavesNoSound());
}

TEST_F(WindowMix, endsWithATerminationSignal)
{
    launch();
    startMix();
    program().process().signal(SIGTERM);
    EXPECT_EQ(howItEnds(), endedWell);
    EXPECT_TRUE(leavesNoSound());
}

TEST_F(WindowMix, goesOnWhileTheWindowIsMinimised)
{
    launch();
    startMix();
    clickOn("Minimise");
    ASSERT_TRUE(eventually([this] { return window().isIconic(); }));
    const unsigned long before = program().applicationFrames();
    EXPECT_TRUE(eventually([&] { return program().applicationFrames() > before; }));
}

} // namespace tolvenary::session
