#include "tests/platform/desktop/switch_fixture.h"

#include "platform/desktop/microphone_settings.h"
#include "platform/desktop/portal_capture_device.h"
#include "tests/platform/desktop/event_loop.h"

#include <optional>

namespace tolvenary
{

namespace
{

const auto *const application = testing::AddGlobalTestEnvironment(new QtApplication);
const auto *const fixtureSettings = testing::AddGlobalTestEnvironment(new FixtureSettings);

class MicrophoneSettings : public SwitchFixture
{
  protected:
    MicrophoneSettings() : SwitchFixture("org.gnome.desktop.privacy", "disable-microphone") {}

    void disable(bool disabled) { throwSwitch(disabled); }
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
}

} // namespace

} // namespace tolvenary
