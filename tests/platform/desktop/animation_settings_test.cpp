// Before Qt's headers, whose keywords would take the place of its names.
#include <gio/gio.h>

#include "platform/desktop/desktop_workspace.h"
#include "tests/platform/desktop/event_loop.h"
#include "tests/platform/desktop/fixture_settings.h"

namespace tolvenary
{

namespace
{

constexpr auto *schemaName = "org.gnome.desktop.interface";

const auto *const application = testing::AddGlobalTestEnvironment(new QtApplication);
const auto *const fixtureSettings = testing::AddGlobalTestEnvironment(new FixtureSettings);

class AnimationsOfTheDesktop : public testing::Test
{
  protected:
    void SetUp() override
    {
        auto *schema = g_settings_schema_source_lookup(g_settings_schema_source_get_default(), schemaName, TRUE);
        ASSERT_TRUE(schema) << "not installed: package gsettings-desktop-schemas";
        g_settings_schema_unref(schema);
        settings = g_settings_new(schemaName);
        g_settings_reset(settings, "enable-animations");
        g_settings_sync();
    }

    void TearDown() override { g_clear_object(&settings); }

    void enable(bool enabled)
    {
        ASSERT_TRUE(g_settings_set_boolean(settings, "enable-animations", enabled ? TRUE : FALSE));
        g_settings_sync();
    }

    GSettings *settings = nullptr;
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
