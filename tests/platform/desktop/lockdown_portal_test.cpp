#include "platform/desktop/portal_capture_device.h"
#include "tests/platform/desktop/event_loop.h"
#include "tests/platform/desktop/private_session.h"
#include "tests/platform/desktop/stub_services.h"

#include <QDBusVariant>
#include <optional>

namespace tolvenary
{

namespace
{

/// A session whose desktop has a backend that speaks of its lockdown.
class LockdownPortal : public testing::Test
{
  protected:
    void SetUp() override
    {
        ASSERT_TRUE(session.isReady());
        qputenv("XDG_CURRENT_DESKTOP", "Test");
        session.folder().write("share/xdg-desktop-portal/portals/test.portal",
                               "[portal]\nDBusName=org.example.portal.Test\n"
                               "Interfaces=org.freedesktop.impl.portal.Lockdown\nUseIn=test\n");
    }

    void startBackend()
    {
        backend = std::make_unique<StubService>(session, QStringLiteral("org.example.portal.Test"),
                                                QStringLiteral("/org/freedesktop/portal/desktop"));
        ASSERT_TRUE(backend->isThere());
    }

    void setPermission(const QString &permission)
    {
        session.setPermission(QStringLiteral("com.tolvenary.app"), permission);
    }

    void ask()
    {
        device.authorizationStatusForMediaType(AVMediaType::audio,
                                               [this](AVAuthorizationStatus status) { answer = status; });
    }

    std::optional<AVAuthorizationStatus> answered()
    {
        spinUntil([this] { return answer.has_value(); });
        return answer;
    }

    /// The status when the backend answers the question for its property so.
    std::optional<AVAuthorizationStatus> statusWhen(bool disabled)
    {
        ask();
        if (!spinUntil([this] { return !backend->calls().empty(); }))
            return std::nullopt;
        const auto &call = backend->calls().front();
        EXPECT_EQ(call.member, QStringLiteral("Get"));
        EXPECT_EQ(call.arguments, (QVariantList{QStringLiteral("org.freedesktop.impl.portal.Lockdown"),
                                                QStringLiteral("disable-microphone")}));
        backend->answer(call, {QVariant::fromValue(QDBusVariant(disabled))});
        return answered();
    }

    PrivateSession session{PrivateSession::Store::installed};
    std::unique_ptr<StubService> backend;
    PortalCaptureDevice device;
    std::optional<AVAuthorizationStatus> answer;
};

TEST_F(LockdownPortal, aLockedMicrophoneIsRestrictedWhateverTheUserAllows)
{
    startBackend();
    setPermission(QStringLiteral("yes"));
    EXPECT_EQ(statusWhen(true), AVAuthorizationStatus::restricted);
}

TEST_F(LockdownPortal, aLockedMicrophoneIsRestrictedBeforeItIsDenied)
{
    startBackend();
    setPermission(QStringLiteral("no"));
    EXPECT_EQ(statusWhen(true), AVAuthorizationStatus::restricted);
}

TEST_F(LockdownPortal, anUnlockedMicrophoneIsTheUsersToDeny)
{
    startBackend();
    setPermission(QStringLiteral("no"));
    EXPECT_EQ(statusWhen(false), AVAuthorizationStatus::denied);
}

TEST_F(LockdownPortal, aBackendThatHangsDoesNotHideADenial)
{
    startBackend();
    setPermission(QStringLiteral("no"));
    ask();
    EXPECT_EQ(answered(), AVAuthorizationStatus::denied);
    EXPECT_EQ(backend->calls().size(), 1U);
}

TEST_F(LockdownPortal, aBackendThatIsNotThereLocksNothing)
{
    ask();
    EXPECT_EQ(answered(), AVAuthorizationStatus::authorized);
}

} // namespace

} // namespace tolvenary
