#include "app/tolvenary_app.h"
#include "platform/fake/fake_platform.h"
#include "tests/core/event_loop.h"
#include "tests/ui/print_qt.h"
#include "ui/star_field.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <gtest/gtest.h>

#include <optional>

namespace tolvenary::test
{

namespace
{

/// The whole application on a made-up desktop.
class MotionOfThePanel : public testing::Test
{
  protected:
    void show()
    {
        app.emplace(platform);
        ASSERT_TRUE(app->show());
        ASSERT_TRUE(waitUntil([&] { return app->window()->isExposed(); }));
        stars = find<StarField>(*app->window()->contentItem());
        ASSERT_NE(stars, nullptr);
    }

    template <typename Item> static Item *find(const QQuickItem &root)
    {
        for (QQuickItem *child : root.childItems()) {
            if (auto *item = qobject_cast<Item *>(child))
                return item;
            if (auto *item = find<Item>(*child))
                return item;
        }
        return nullptr;
    }

    bool areStarsAtFullOpacity() const
    {
        const std::vector<double> opacities = stars->opacities();
        for (std::size_t i = 0; i < opacities.size(); ++i)
            if (opacities[i] != stars->stars()[i].a)
                return false;
        return true;
    }

    FakePlatform platform;
    std::optional<TolvenaryApp> app;
    StarField *stars = nullptr;
};

} // namespace

TEST_F(MotionOfThePanel, theStarsRestWhenTheDesktopAsksForIt)
{
    platform.workspace().setReduceMotion(true);
    show();
    EXPECT_TRUE(stars->twinkle());
    EXPECT_FALSE(stars->isPulsing());
    EXPECT_TRUE(areStarsAtFullOpacity());
}

TEST_F(MotionOfThePanel, theStarsFollowTheDesktopWhileTheProgramRuns)
{
    show();
    EXPECT_TRUE(stars->isPulsing());
    ASSERT_TRUE(waitUntil([&] { return !areStarsAtFullOpacity(); }));
    platform.workspace().setReduceMotion(true);
    EXPECT_FALSE(stars->isPulsing());
    EXPECT_TRUE(areStarsAtFullOpacity());
    platform.workspace().setReduceMotion(false);
    EXPECT_TRUE(stars->isPulsing());
}

TEST_F(MotionOfThePanel, noButtonSwingsThen)
{
    show();
    platform.workspace().setReduceMotion(true);
    auto *button = app->window()->findChild<QQuickItem *>("refreshApps");
    ASSERT_NE(button, nullptr);
    button->setProperty("down", true);
    EXPECT_EQ(button->scale(), 0.96);
    button->setProperty("down", false);
    EXPECT_EQ(button->scale(), 1);
}

TEST_F(MotionOfThePanel, theStarsStandAsTheyWereWhileTheWindowIsCovered)
{
    show();
    ASSERT_TRUE(waitUntil([&] { return !areStarsAtFullOpacity(); }));
    platform.windowOcclusion().setVisible(false);
    EXPECT_FALSE(stars->isPulsing());
    EXPECT_FALSE(areStarsAtFullOpacity());
    platform.windowOcclusion().setVisible(true);
    EXPECT_TRUE(stars->isPulsing());
}

TEST_F(MotionOfThePanel, theDesktopIsNotObservedByAProgramThatIsGone)
{
    show();
    EXPECT_TRUE(platform.workspace().isObserved());
    EXPECT_TRUE(platform.windowOcclusion().isObserved());
    app.reset();
    EXPECT_FALSE(platform.workspace().isObserved());
    EXPECT_FALSE(platform.windowOcclusion().isObserved());
}

} // namespace tolvenary::test
