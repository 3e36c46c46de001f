#include "app/window_style.h"

#include <QQuickWindow>
#include <QSignalSpy>
#include <QSurfaceFormat>
#include <gtest/gtest.h>

namespace tolvenary::test
{

TEST(WindowStyle, takesTheTitleBarAwayAndKeepsWhatElseTheWindowIs)
{
    QQuickWindow window;
    window.setFlags(Qt::Window | Qt::WindowStaysOnTopHint);
    styleWindow(window);
    EXPECT_EQ(window.flags(), Qt::Window | Qt::WindowStaysOnTopHint | Qt::FramelessWindowHint);
    EXPECT_EQ(window.color(), QColor::fromRgbF(0.04F, 0.03F, 0.1F));
}

TEST(WindowStyle, leavesTheCornersOfABlendedWindowClear)
{
    QSurfaceFormat blended;
    blended.setAlphaBufferSize(8);
    QQuickWindow window;
    window.setFormat(blended);
    styleWindow(window);
    EXPECT_EQ(window.color().alpha(), 0);
}

TEST(WindowStyle, bearsBeingAppliedAgain)
{
    QQuickWindow window;
    styleWindow(window);
    window.show();
    const QSignalSpy changes(&window, &QWindow::visibilityChanged);
    styleWindow(window);
    EXPECT_EQ(window.flags(), Qt::Window | Qt::FramelessWindowHint);
    EXPECT_EQ(window.color(), QColor::fromRgbF(0.04F, 0.03F, 0.1F));
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(changes.count(), 0);
}

} // namespace tolvenary::test
