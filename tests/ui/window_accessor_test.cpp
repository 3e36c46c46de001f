#include "app/window_accessor.h"
#include "tests/core/event_loop.h"

#include <QQuickWindow>
#include <gtest/gtest.h>

namespace tolvenary::test
{

namespace
{

/// Counts how often the window is configured.
class Accessor : public testing::Test
{
  protected:
    WindowAccessor *makeIn(QQuickItem &parent)
    {
        return new WindowAccessor(
            [this](QQuickWindow &host) {
                EXPECT_EQ(&host, &window);
                ++configured;
            },
            &parent);
    }

    QQuickWindow window;
    int configured = 0;
};

} // namespace

TEST_F(Accessor, configuresItsWindowOnTheNextTurn)
{
    makeIn(*window.contentItem());
    EXPECT_EQ(configured, 0);
    processEvents();
    EXPECT_EQ(configured, 1);
}

TEST_F(Accessor, configuresAnewAtEachUpdate)
{
    WindowAccessor &accessor = *makeIn(*window.contentItem());
    processEvents();
    accessor.updateView();
    EXPECT_EQ(configured, 2);
}

TEST_F(Accessor, withoutAWindowDoesNothingUntilThereIsOne)
{
    QQuickItem panel;
    WindowAccessor &accessor = *makeIn(panel);
    processEvents();
    accessor.updateView();
    EXPECT_EQ(configured, 0);
    panel.setParentItem(window.contentItem());
    EXPECT_EQ(configured, 1);
    panel.setParentItem(nullptr);
    accessor.updateView();
    EXPECT_EQ(configured, 1);
}

} // namespace tolvenary::test
