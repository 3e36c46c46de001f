#include "platform/desktop/portal_capture_device.h"
#include "tests/platform/desktop/portal_fixture.h"

#include <QDBusVariant>
#include <optional>

namespace tolvenary
{

namespace
{

/// A session whose desktop has a backend that speaks of its lockdown.
class LockdownPortal : public PortalFixture
{
  protected:
    LockdownPortal() : PortalFixture("org.freedesktop.impl.portal.Lockdown") {}

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
        if (!isAsked())
            return std::nullopt;
        const auto &call = backend->calls().front();
        EXPECT_EQ(call.member, QStringLiteral("Get"));
        EXPECT_EQ(call.arguments, (QVariantList{QStringLiteral("org.freedesktop.impl.portal.Lockdown"),
                                                QStringLiteral("disable-microphone")}));
        backend->answer(call, {QVariant::fromValue(QDBusVariant(disabled))});
        return answered();
    }

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
