#include "platform/desktop/x_window_occlusion.h"
#include "tests/core/event_loop.h"
#include "tests/ui/support/stage_window.h"
#include "ui/motion.h"
#include "ui/star_field.h"

#include <QQuickWindow>
#include <QRasterWindow>
#include <QTimer>
#include <gtest/gtest.h>

namespace tolvenary::test
{

namespace
{

/// The window with its stars pulsing, and a count of what it draws.
class Unseen : public testing::Test
{
  protected:
    Unseen()
    {
        QObject::connect(&window(), &QQuickWindow::frameSwapped, &window(), [this] { ++frames; });
        shown.motion().setReduced(false);
        stars = qobject_cast<StarField *>(shown.item("stars"));
    }

    QQuickWindow &window() { return shown.window(); }

    bool isDrawing()
    {
        const int before = frames;
        return waitUntil([&] { return frames > before + 3; });
    }

    /// Whether the window comes to draw nothing for as long as a pulsing field would take for a dozen frames.
    bool isAtRest()
    {
        return waitUntil([this] {
            const int before = frames;
            waitForTicks(12);
            return frames == before;
        });
    }

    /// The stars' own pace serves as the clock.
    static void waitForTicks(int count)
    {
        int ticks = 0;
        QTimer pace;
        QObject::connect(&pace, &QTimer::timeout, [&ticks] { ++ticks; });
        pace.start(33);
        ASSERT_TRUE(waitUntil([&] { return ticks >= count; }));
    }

    PanelStage stage;
    StageWindow shown{stage, {520, 541}};
    StarField *stars = nullptr;
    int frames = 0;
};

} // namespace

TEST_F(Unseen, aWindowThatIsSeenIsDrawn)
{
    EXPECT_TRUE(isDrawing());
    const int before = frames;
    waitForTicks(12);
    EXPECT_GT(frames, before);
}

TEST_F(Unseen, aHiddenWindowDrawsNothingUntilItShows)
{
    ASSERT_TRUE(isDrawing());
    window().hide();
    EXPECT_TRUE(isAtRest());
    EXPECT_FALSE(stars->isPulsing());
    window().show();
    EXPECT_TRUE(isDrawing());
}

TEST_F(Unseen, aMinimisedWindowDrawsNothingUntilItIsBack)
{
    ASSERT_TRUE(isDrawing());
    window().showMinimized();
    ASSERT_TRUE(waitUntil([&] { return window().visibility() == QWindow::Minimized; }));
    EXPECT_TRUE(isAtRest());
    EXPECT_FALSE(stars->isPulsing());
    window().showNormal();
    EXPECT_TRUE(isDrawing());
}

TEST_F(Unseen, aWindowThatOthersCoverDrawsNothingUntilItIsUncovered)
{
    XWindowOcclusion occlusion;
    occlusion.observeWindowDidChangeOcclusionState(window().winId(),
                                                   [this](bool visible) { shown.motion().setPaused(!visible); });
    QRasterWindow cover;
    cover.setFlag(Qt::FramelessWindowHint);
    cover.setGeometry(window().geometry().marginsAdded({50, 50, 50, 50}));
    ASSERT_TRUE(isDrawing());
    cover.show();
    cover.raise();
    EXPECT_TRUE(waitUntil([this] { return !stars->isPulsing(); }));
    EXPECT_TRUE(isAtRest());
    // A strip of it is enough to be seen.
    cover.setGeometry(cover.geometry().translated(100, 0));
    EXPECT_TRUE(isDrawing());
    cover.setGeometry(cover.geometry().translated(-100, 0));
    EXPECT_TRUE(isAtRest());
    cover.hide();
    EXPECT_TRUE(isDrawing());
}

TEST_F(Unseen, hiddenStarsLeaveTheWindowAtRest)
{
    ASSERT_TRUE(isDrawing());
    stars->setVisible(false);
    EXPECT_TRUE(isAtRest());
    stars->setVisible(true);
    EXPECT_TRUE(isDrawing());
}

TEST_F(Unseen, restingStarsLeaveTheWindowAtRest)
{
    ASSERT_TRUE(isDrawing());
    shown.motion().setReduced(true);
    EXPECT_TRUE(isAtRest());
    shown.motion().setReduced(false);
    EXPECT_TRUE(isDrawing());
}

} // namespace tolvenary::test
