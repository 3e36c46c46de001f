#include "platform/desktop/portal_capture_device.h"
#include "tests/platform/desktop/portal_fixture.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <memory>

namespace tolvenary
{

namespace
{

constexpr uint granted = 0;
constexpr uint refused = 1;
constexpr uint closed = 2;

QString us()
{
    return QStringLiteral("com.tolvenary.app");
}

/// A session whose store says `ask` for us, and whose desktop has a backend that can ask.
class AccessDialog : public PortalFixture
{
  protected:
    AccessDialog() : PortalFixture("org.freedesktop.impl.portal.Access") {}

    void SetUp() override
    {
        PortalFixture::SetUp();
        session.setPermission(us(), QStringLiteral("ask"));
    }

    void request()
    {
        device->requestAccessForMediaType(AVMediaType::audio, [this](bool answer) { answers.push_back(answer); });
    }

    bool isAnswered(std::size_t count = 1)
    {
        return spinUntil([=, this] { return answers.size() >= count; });
    }

    void answer(uint response) { backend->answer(backend->calls().front(), {response, QVariantMap()}); }

    std::unique_ptr<PortalCaptureDevice> device = std::make_unique<PortalCaptureDevice>();
    std::vector<bool> answers;
};

using Answers = std::vector<bool>;

TEST_F(AccessDialog, theQuestionIsPutInTheDesktopsOwnDialog)
{
    startBackend();
    request();
    ASSERT_TRUE(isAsked());
    const auto &call = backend->calls().front();
    EXPECT_EQ(call.member, QStringLiteral("AccessDialog"));
    EXPECT_EQ(call.message.interface(), QStringLiteral("org.freedesktop.impl.portal.Access"));
    EXPECT_EQ(call.message.signature(), QStringLiteral("osssssa{sv}"));
    ASSERT_EQ(call.arguments.size(), 7);
    EXPECT_EQ(call.arguments[1].toString(), us());
    EXPECT_EQ(call.arguments[3].toString(), QStringLiteral("Allow Access to the Microphone?"));
    EXPECT_EQ(call.arguments[4].toString(), QStringLiteral("Tolvenary wants to use your microphone."));
    const auto options = qdbus_cast<QVariantMap>(call.arguments[6]);
    EXPECT_EQ(options[QStringLiteral("deny_label")].toString(), QStringLiteral("Deny"));
    EXPECT_EQ(options[QStringLiteral("grant_label")].toString(), QStringLiteral("Allow"));
    EXPECT_TRUE(answers.empty());
}

TEST_F(AccessDialog, aGrantIsKept)
{
    startBackend();
    request();
    ASSERT_TRUE(isAsked());
    answer(granted);
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answers, Answers{true});
    EXPECT_EQ(session.permission(us()), QStringList(QStringLiteral("yes")));
}

TEST_F(AccessDialog, aRefusalIsKept)
{
    startBackend();
    request();
    ASSERT_TRUE(isAsked());
    answer(refused);
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answers, Answers{false});
    EXPECT_EQ(session.permission(us()), QStringList(QStringLiteral("no")));
}

TEST_F(AccessDialog, afterARefusalNothingIsAskedAgain)
{
    startBackend();
    request();
    ASSERT_TRUE(isAsked());
    answer(refused);
    ASSERT_TRUE(isAnswered());
    request();
    ASSERT_TRUE(isAnswered(2));
    EXPECT_EQ(answers, (Answers{false, false}));
    EXPECT_EQ(backend->calls().size(), 1U);
}

TEST_F(AccessDialog, aDialogThatIsClosedIsNoAnswerToKeep)
{
    startBackend();
    request();
    ASSERT_TRUE(isAsked());
    answer(closed);
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answers, Answers{false});
    EXPECT_EQ(session.permission(us()), QStringList(QStringLiteral("ask")));
}

TEST_F(AccessDialog, aBackendThatVanishesEndsTheWaitWithoutAnAnswerToKeep)
{
    startBackend();
    request();
    ASSERT_TRUE(isAsked());
    backend->vanish();
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answers, Answers{false});
    EXPECT_EQ(session.permission(us()), QStringList(QStringLiteral("ask")));
}

TEST_F(AccessDialog, aBackendThatIsNotThereIsNo)
{
    request();
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answers, Answers{false});
    EXPECT_EQ(session.permission(us()), QStringList(QStringLiteral("ask")));
}

TEST_F(AccessDialog, withoutABackendThatCouldAskTheAnswerIsNo)
{
    qputenv("XDG_CURRENT_DESKTOP", "Other");
    request();
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answers, Answers{false});
    EXPECT_EQ(session.permission(us()), QStringList(QStringLiteral("ask")));
}

TEST_F(AccessDialog, whoeverHasAccessIsNotAsked)
{
    startBackend();
    session.setPermission(us(), QStringLiteral("yes"));
    request();
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answers, Answers{true});
    EXPECT_TRUE(backend->calls().empty());
}

TEST_F(AccessDialog, whoeverIsDeniedAccessIsNotAsked)
{
    startBackend();
    session.setPermission(us(), QStringLiteral("no"));
    request();
    ASSERT_TRUE(isAnswered());
    EXPECT_EQ(answers, Answers{false});
    EXPECT_TRUE(backend->calls().empty());
}

TEST_F(AccessDialog, aSecondRequestSharesTheOpenQuestion)
{
    startBackend();
    request();
    ASSERT_TRUE(isAsked());
    request();
    answer(granted);
    ASSERT_TRUE(isAnswered(2));
    EXPECT_EQ(answers, (Answers{true, true}));
    EXPECT_EQ(backend->calls().size(), 1U);
}

TEST_F(AccessDialog, anAnswerThatComesAfterTheDeviceIsGoneIsKeptButNotHandedOn)
{
    startBackend();
    request();
    ASSERT_TRUE(isAsked());
    device.reset();
    answer(granted);
    EXPECT_TRUE(spinUntil([this] { return session.permission(us()) == QStringList(QStringLiteral("yes")); }));
    EXPECT_TRUE(answers.empty());
}

} // namespace

} // namespace tolvenary
