#include "app/tolvenary_app.h"
#include "platform/fake/fake_platform.h"
#include "tests/core/event_loop.h"
#include "tests/ui/print_qt.h"

#include <QQuickWindow>
#include <gtest/gtest.h>

#include <functional>
#include <optional>

namespace tolvenary::test
{

namespace
{

class Application : public testing::Test
{
  protected:
    void plugInDevice()
    {
        FakeDevice device;
        device.id = 5;
        device.name = "BlackHole 2ch";
        platform.objects().devices.push_back(device);
    }

    FakePlatform platform;
};

} // namespace

TEST_F(Application, theListsAreFilledWithoutBeingAskedFor)
{
    platform.shareableContent().applications.set(std::vector<SCRunningApplication>{{"mpv", 9, "mpv"}});
    plugInDevice();
    TolvenaryApp app(platform);
    ASSERT_TRUE(app.show());
    EXPECT_TRUE(waitUntil([&] { return app.coordinator().availableApps().size() == 1; }));
    ASSERT_EQ(app.coordinator().blackHoleDevices().size(), 1U);
    EXPECT_TRUE(app.coordinator().selectedBlackHole().has_value());
    EXPECT_FALSE(app.coordinator().isRunning());
}

TEST_F(Application, theDeviceIsThereBeforeTheApplicationsAreListed)
{
    platform.shareableContent().applications.holdBack();
    plugInDevice();
    TolvenaryApp app(platform);
    ASSERT_TRUE(app.show());
    ASSERT_TRUE(waitUntil([&] { return platform.shareableContent().applications.waiting() == 1; }));
    EXPECT_TRUE(app.coordinator().selectedBlackHole().has_value());
    platform.shareableContent().applications.deliver();
    processEvents();
}

TEST_F(Application, aMixThatRunsEndsWithItAsByStop)
{
    platform.shareableContent().applications.set(std::vector<SCRunningApplication>{{"mpv", 9, "mpv"}});
    plugInDevice();
    std::optional<TolvenaryApp> app(platform);
    ASSERT_TRUE(app->show());
    ASSERT_TRUE(waitUntil([&] { return app->coordinator().availableApps().size() == 1; }));
    app->coordinator().setSelectedAppID(9);
    // What the system is asked for while a mix is being ended in that way.
    const auto callsOf = [&](const std::function<void()> &end) {
        app->coordinator().start();
        EXPECT_TRUE(waitUntil([&] { return app->coordinator().isRunning(); }));
        EXPECT_TRUE(platform.holdsAnything());
        const auto before = static_cast<std::ptrdiff_t>(platform.calls().log().size());
        end();
        const auto &calls = platform.calls().log();
        return std::vector(calls.begin() + before, calls.end());
    };
    const auto byStop = callsOf([&] { app->coordinator().teardown(); });
    const auto byTheEnd = callsOf([&] { app.reset(); });
    EXPECT_GT(byStop.size(), 4U);
    EXPECT_EQ(byTheEnd, byStop);
    EXPECT_FALSE(platform.holdsAnything());
}

TEST_F(Application, theWindowIsNeverSmallerThanItsLeastSizeAndMayBeLarger)
{
    TolvenaryApp app(platform);
    ASSERT_TRUE(app.show());
    EXPECT_EQ(app.window()->minimumSize(), QSize(520, 520));
    EXPECT_GT(app.window()->maximumWidth(), 4000);
    EXPECT_GT(app.window()->maximumHeight(), 4000);
    EXPECT_GE(app.window()->height(), 520);
}

TEST_F(Application, theWindowHasNoTitleBarAndAColourOfItsOwn)
{
    TolvenaryApp app(platform);
    ASSERT_TRUE(app.show());
    EXPECT_TRUE(app.window()->flags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(waitUntil([&] { return app.window()->color() == QColor::fromRgbF(0.04F, 0.03F, 0.1F); }));
    EXPECT_EQ(app.window()->title(), "Tolvenary");
}

} // namespace tolvenary::test
