#include "platform/desktop/portal_capture_device.h"
#include "tests/platform/desktop/event_loop.h"
#include "tests/platform/desktop/private_session.h"
#include "tests/platform/desktop/stub_services.h"

#include <QElapsedTimer>
#include <iostream>
#include <optional>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tolvenary
{

namespace
{

const auto *const application = testing::AddGlobalTestEnvironment(new QtApplication);

constexpr auto ownId = "com.tolvenary.app";

/// What a device of the current environment answers; nothing when it does not, or not just once.
std::optional<AVAuthorizationStatus> statusOf(AVCaptureDevice &device)
{
    std::vector<AVAuthorizationStatus> answers;
    device.authorizationStatusForMediaType(AVMediaType::audio,
                                           [&](AVAuthorizationStatus status) { answers.push_back(status); });
    spinUntil([&] { return !answers.empty(); });
    return answers.size() == 1 ? std::optional(answers.front()) : std::nullopt;
}

std::optional<AVAuthorizationStatus> status()
{
    PortalCaptureDevice device;
    return statusOf(device);
}

class MicrophoneStatus : public testing::Test
{
  protected:
    void SetUp() override { ASSERT_TRUE(session.isReady()); }

    PrivateSession session{PrivateSession::Store::installed};
};

TEST_F(MicrophoneStatus, withoutAnEntryItIsAuthorized)
{
    EXPECT_EQ(status(), AVAuthorizationStatus::authorized);
}

TEST_F(MicrophoneStatus, yesIsAuthorized)
{
    session.setPermission(QLatin1String(ownId), QStringLiteral("yes"));
    EXPECT_EQ(status(), AVAuthorizationStatus::authorized);
}

TEST_F(MicrophoneStatus, noIsDenied)
{
    session.setPermission(QLatin1String(ownId), QStringLiteral("no"));
    EXPECT_EQ(status(), AVAuthorizationStatus::denied);
}

TEST_F(MicrophoneStatus, askIsNotDetermined)
{
    session.setPermission(QLatin1String(ownId), QStringLiteral("ask"));
    EXPECT_EQ(status(), AVAuthorizationStatus::notDetermined);
}

TEST_F(MicrophoneStatus, anUnknownWordIsAuthorized)
{
    session.setPermission(QLatin1String(ownId), QStringLiteral("perhaps"));
    EXPECT_EQ(status(), AVAuthorizationStatus::authorized);
}

TEST_F(MicrophoneStatus, theEntriesOfOthersAndOfProgramsWithoutAnIdAreNotOurs)
{
    session.setPermission(QStringLiteral("org.example.Other"), QStringLiteral("no"));
    session.setPermission(QString(), QStringLiteral("no"));
    EXPECT_EQ(status(), AVAuthorizationStatus::authorized);
}

TEST_F(MicrophoneStatus, aChangeInTheSettingsIsSeenByTheNextQuestion)
{
    PortalCaptureDevice device;
    session.setPermission(QLatin1String(ownId), QStringLiteral("no"));
    EXPECT_EQ(statusOf(device), AVAuthorizationStatus::denied);
    session.setPermission(QLatin1String(ownId), QStringLiteral("ask"));
    EXPECT_EQ(statusOf(device), AVAuthorizationStatus::notDetermined);
    session.setPermission(QLatin1String(ownId), QStringLiteral("yes"));
    EXPECT_EQ(statusOf(device), AVAuthorizationStatus::authorized);
}

TEST_F(MicrophoneStatus, aBusThatEndsDuringTheRunIsAuthorized)
{
    auto other = std::make_unique<PrivateSession>(PrivateSession::Store::installed);
    other->setPermission(QLatin1String(ownId), QStringLiteral("no"));
    PortalCaptureDevice device;
    EXPECT_EQ(statusOf(device), AVAuthorizationStatus::denied);
    other.reset();
    EXPECT_EQ(statusOf(device), AVAuthorizationStatus::authorized);
}

TEST_F(MicrophoneStatus, anAnswerThatComesAfterTheDeviceIsGoneIsDropped)
{
    int answers = 0;
    auto device = std::make_unique<PortalCaptureDevice>();
    device->authorizationStatusForMediaType(AVMediaType::audio, [&](AVAuthorizationStatus) { ++answers; });
    device.reset();
    EXPECT_EQ(status(), AVAuthorizationStatus::authorized); // a later question has been answered meanwhile
    EXPECT_EQ(answers, 0);
}

TEST(MicrophoneStatusWithoutStore, itIsAuthorized)
{
    const PrivateSession session(PrivateSession::Store::absent);
    ASSERT_TRUE(session.isReady());
    EXPECT_EQ(status(), AVAuthorizationStatus::authorized);
}

TEST(MicrophoneStatusWithoutBus, itIsAuthorized)
{
    qputenv("GSETTINGS_BACKEND", "memory"); // the machine's own settings may say something
    qunsetenv("XDG_RUNTIME_DIR");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    EXPECT_EQ(status(), AVAuthorizationStatus::authorized);
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    EXPECT_EQ(status(), AVAuthorizationStatus::authorized);
    qputenv("DBUS_SESSION_BUS_ADDRESS", "nonsense");
    EXPECT_EQ(status(), AVAuthorizationStatus::authorized);
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
}

TEST(MicrophoneStatusOnASocketWithoutAddress, theUsersBusIsFound)
{
    PrivateSession session(PrivateSession::Store::installed);
    ASSERT_TRUE(session.isReady());
    session.setPermission(QLatin1String(ownId), QStringLiteral("no"));
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    EXPECT_EQ(status(), AVAuthorizationStatus::denied);
}

/// Asks while something hangs: the call returns at once, and the answer comes when the second is over.
void expectAuthorizedAfterASecond(AVCaptureDevice &device)
{
    QElapsedTimer clock;
    clock.start();
    std::optional<AVAuthorizationStatus> answer;
    device.authorizationStatusForMediaType(AVMediaType::audio, [&](AVAuthorizationStatus given) { answer = given; });
    EXPECT_LT(clock.elapsed(), 500);
    EXPECT_FALSE(answer);
    ASSERT_TRUE(spinUntil([&] { return answer.has_value(); }));
    EXPECT_EQ(answer, AVAuthorizationStatus::authorized);
    EXPECT_GE(clock.elapsed(), 900); // Qt lets timers of this length off up to 5 % early
    EXPECT_LT(clock.elapsed(), 5000);
    std::cout << "answered after " << clock.elapsed() << " ms\n";
}

TEST(MicrophoneStatusOfAHangingStore, itIsAuthorizedAfterASecond)
{
    PrivateSession session(PrivateSession::Store::absent);
    ASSERT_TRUE(session.isReady());
    const StubService store(session, QStringLiteral("org.freedesktop.impl.portal.PermissionStore"),
                            QStringLiteral("/org/freedesktop/impl/portal/PermissionStore"));
    ASSERT_TRUE(store.isThere());
    PortalCaptureDevice device;
    expectAuthorizedAfterASecond(device);
    EXPECT_EQ(store.calls().size(), 1U);
}

/// A bus that takes connections and never says a word.
class SilentBus
{
  public:
    explicit SilentBus(const std::string &path) : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address = {AF_UNIX, {}};
        path.copy(address.sun_path, sizeof(address.sun_path) - 1);
        m_listens = bind(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof(address)) == 0 &&
                    listen(m_socket, 5) == 0;
    }
    ~SilentBus() { close(m_socket); }
    SilentBus(const SilentBus &) = delete;
    SilentBus &operator=(const SilentBus &) = delete;

    bool listens() const { return m_listens; }

  private:
    int m_socket;
    bool m_listens = false;
};

TEST(MicrophoneStatusOnAHangingBus, itIsAuthorizedAfterASecond)
{
    const TemporaryFolder folder;
    const auto path = (folder.path() / "bus").string();
    qputenv("GSETTINGS_BACKEND", "memory"); // the machine's own settings may say something
    const SilentBus bus(path);
    ASSERT_TRUE(bus.listens());
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + QByteArray::fromStdString(path));
    PortalCaptureDevice device;
    expectAuthorizedAfterASecond(device);
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
}

} // namespace

} // namespace tolvenary
