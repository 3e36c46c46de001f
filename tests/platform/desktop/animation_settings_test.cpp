#include "tests/platform/desktop/switch_fixture.h"

#include "platform/desktop/desktop_workspace.h"
#include "tests/platform/desktop/event_loop.h"

namespace tolvenary
{

namespace
{

const auto *const application = testing::AddGlobalTestEnvironment(new QtApplication);
const auto *const fixtureSettings = testing::AddGlobalTestEnvironment(new FixtureSettings);

class AnimationsOfTheDesktop : public SwitchFixture
{
  protected:
    AnimationsOfTheDesktop() : SwitchFixture("org.gnome.desktop.interface", "enable-animations") {}

    void enable(bool enabled) { throwSwitch(enabled); }
};

TEST_F(AnimationsOfTheDesktop, areOnUnlessSwitchedOff)
{
    EXPECT_FALSE(DesktopWorkspace().accessibilityDisplayShouldReduceMotion());
    enable(false);
    EXPECT_TRUE(DesktopWorkspace().accessibilityDisplayShouldReduceMotion());
}

TEST_F(AnimationsOfTheDesktop, areFollowedWhileTheProgramRuns)
{
    DesktopWorkspace workspace;
    bool seen = false;
    workspace.observeAccessibilityDisplayOptionsDidChange(
        [&] { seen = workspace.accessibilityDisplayShouldReduceMotion(); });
    enable(false);
    EXPECT_TRUE(spinUntil([&] { return seen; }));
    enable(true);
    EXPECT_TRUE(spinUntil([&] { return !seen; }));
}

TEST_F(AnimationsOfTheDesktop, nobodyIsToldWhoHasStoppedToObserve)
{
    DesktopWorkspace workspace;
    bool told = false;
    workspace.observeAccessibilityDisplayOptionsDidChange([&] { told = true; });
    workspace.observeAccessibilityDisplayOptionsDidChange(nullptr);
    enable(false);
    EXPECT_TRUE(spinUntil([&] { return workspace.accessibilityDisplayShouldReduceMotion(); }));
    QCoreApplication::processEvents();
    EXPECT_FALSE(told);
}

} // namespace

} // namespace tolvenary
