// Before Qt's headers, whose keywords would take the place of its names.
#include <gio/gio.h>

#include "platform/desktop/microphone_settings.h"
#include "platform/desktop/portal_capture_device.h"
#include "tests/platform/desktop/event_loop.h"
#include "tests/platform/desktop/fixture_settings.h"

#include <optional>

namespace tolvenary
{

namespace
{

constexpr auto *schemaName = "org.gnome.desktop.privacy";

const auto *const application = testing::AddGlobalTestEnvironment(new QtApplication);
const auto *const fixtureSettings = testing::AddGlobalTestEnvironment(new FixtureSettings);

class MicrophoneSettings : public testing::Test
{
  protected:
    void SetUp() override
    {
        auto *schema = g_settings_schema_source_lookup(g_settings_schema_source_get_default(), schemaName, TRUE);
        ASSERT_TRUE(schema) << "not installed: package gsettings-desktop-schemas";
        g_settings_schema_unref(schema);
        settings = g_settings_new(schemaName);
    }

    void TearDown() override { g_clear_object(&settings); }

    void disable(bool disabled)
    {
        ASSERT_TRUE(g_settings_set_boolean(settings, "disable-microphone", disabled ? TRUE : FALSE));
        g_settings_sync();
    }

    GSettings *settings = nullptr;
};

std::optional<AVAuthorizationStatus> status(AVCaptureDevice &device)
{
    std::optional<AVAuthorizationStatus> answer;
    device.authorizationStatusForMediaType(AVMediaType::audio, [&](AVAuthorizationStatus given) { answer = given; });
    spinUntil([&] { return answer.has_value(); });
    return answer;
}

TEST_F(MicrophoneSettings, theSettingIsOffUnlessSet)
{
    g_settings_reset(settings, "disable-microphone");
    EXPECT_FALSE(isMicrophoneDisabledInSettings());
}

TEST_F(MicrophoneSettings, aDisabledMicrophoneIsRestrictedUntilItIsEnabled)
{
    PortalCaptureDevice device;
    disable(true);
    EXPECT_TRUE(isMicrophoneDisabledInSettings());
    EXPECT_EQ(status(device), AVAuthorizationStatus::restricted);
    disable(false);
    EXPECT_FALSE(isMicrophoneDisabledInSettings());
    EXPECT_EQ(status(device), AVAuthorizationStatus::authorized);
}

TEST_F(MicrophoneSettings, aRequestForADisabledMicrophoneIsRefused)
{
    PortalCaptureDevice device;
    disable(true);
    std::optional<bool> answer;
    device.requestAccessForMediaType(AVMediaType::audio, [&](bool granted) { answer = granted; });
    ASSERT_TRUE(spinUntil([&] { return answer.has_value(); }));
    EXPECT_EQ(answer, false);
    disable(false);
}

} // namespace

} // namespace tolvenary
