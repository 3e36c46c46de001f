#include "platform/pipewire/connection.h"

#include "tests/session/support/private_session.h"
#include "tests/session/support/wait_until.h"

#include <atomic>
#include <cerrno>
#include <gtest/gtest.h>
#include <pipewire/pipewire.h>

namespace tolvenary::session
{

namespace
{

using namespace std::chrono_literals;

struct Library {
    Library() { pw_init(nullptr, nullptr); }
    ~Library() { pw_deinit(); }
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;
};

class NoObserver final : public Connection::Observer
{
    void connected(pw_core * /*core*/) override {}
    void disconnecting() override {}
    void accessDenied() override {}
    void update() override {}
    void tick() override {}
};

/// A connection to a server that answers.
class ConnectionTest : public testing::Test
{
  protected:
    void SetUp() override
    {
        connection.open();
        ASSERT_TRUE(waitUntil(
            [&] {
                const Connection::Lock lock(connection);
                return connection.isResponsive();
            },
            10s));
    }

    PrivateSession session;
    Library library;
    NoObserver observer;
    Connection connection{observer};
};

constexpr auto never = [] { return false; };

} // namespace

TEST_F(ConnectionTest, countsAServerThatLetsOneWaitInVainAsHangingUntilItAnswersAgain)
{
    {
        const Connection::Lock lock(connection);
        EXPECT_EQ(connection.waitUntil(never), -ETIMEDOUT);
        EXPECT_FALSE(connection.isResponsive());
    }
    EXPECT_TRUE(waitUntil(
        [&] {
            const Connection::Lock lock(connection);
            return connection.isResponsive();
        },
        10s));
}

TEST_F(ConnectionTest, doesNotBlameTheServerForWhatOthersDoNotDo)
{
    const Connection::Lock lock(connection);
    EXPECT_EQ(connection.waitForOthers(never, 2ms), -ETIMEDOUT);
    EXPECT_TRUE(connection.isResponsive());
    EXPECT_EQ(connection.waitUntil([] { return true; }), noErr);
}

TEST_F(ConnectionTest, endsWhatWasAskedFirstThoughMoreAndMoreIsAsked)
{
    session.hangServer();
    std::atomic<bool> isOver = false;
    const auto ask = [&](std::function<void(bool)> done) {
        const Connection::Lock lock(connection);
        connection.roundTrip(std::move(done));
    };
    ask([&](bool answered) { isOver = !answered; });
    EXPECT_TRUE(waitUntil([&] { return isOver.load(); }, 10s,
                          [&] {
                              std::this_thread::sleep_for(100ms);
                              ask([](bool) {});
                          }));
    session.resumeServer();
}

} // namespace tolvenary::session
