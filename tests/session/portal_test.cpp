#include "app/linux_platform.h"
#include "platform/audio_server.h"
#include "tests/session/heartbeat.h"
#include "tests/session/support/private_session.h"
#include "tests/session/support/wait_until.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <array>
#include <atomic>
#include <csignal>
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <pipewire/pipewire.h>
#include <stdexcept>
#include <string_view>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tolvenary::session
{

namespace
{

using namespace std::chrono_literals;

constexpr qint64 frozen = 200;

/// This thread, and those that it starts, must ask for real-time priority, as the user of a desktop must: it has
/// neither a limit that allows it nor root's right.
class NoRealTimeRights
{
  public:
    NoRealTimeRights()
    {
        getrlimit(RLIMIT_RTPRIO, &m_limit);
        const rlimit none{0, m_limit.rlim_max};
        check(setrlimit(RLIMIT_RTPRIO, &none));
        check(syscall(SYS_capget, &m_header, m_rights.data()));
        auto fewer = m_rights;
        fewer[0].effective &= ~(1U << CAP_SYS_NICE);
        check(syscall(SYS_capset, &m_header, fewer.data()));
    }
    ~NoRealTimeRights()
    {
        syscall(SYS_capset, &m_header, m_rights.data());
        setrlimit(RLIMIT_RTPRIO, &m_limit);
    }
    NoRealTimeRights(const NoRealTimeRights &) = delete;
    NoRealTimeRights &operator=(const NoRealTimeRights &) = delete;

  private:
    static void check(long result)
    {
        if (result != 0)
            throw std::runtime_error("the rights cannot be given up");
    }

    rlimit m_limit{};
    __user_cap_header_struct m_header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, 2> m_rights{};
};

void runEvents()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
    std::this_thread::sleep_for(1ms);
}

enum class Answer { none, yes, no };

} // namespace

/// The library asks the portal for real-time rights when it is set up.
TEST(SilentPortal, neitherFreezesTheWindowNorHoldsUpAnAnswerAndTheServerIsFoundBehindIt)
{
    int count = 1;
    char name[] = "portal-test";
    char *arguments[] = {name, nullptr};
    PrivateSession session;
    QCoreApplication application(count, arguments);
    const auto portal = session.start({TOLVENARY_SILENT_PORTAL});
    ASSERT_TRUE(waitUntil([&] { return portal->output() == "silent\n"; }, 10s)) << portal->output();
    const NoRealTimeRights noRights;
    std::atomic<Answer> answer = Answer::none;
    LinuxPlatform platform;
    AudioServer &server = platform.audioServer();

    Heartbeat heartbeat;
    QElapsedTimer clock;
    clock.start();
    server.settle([&](bool answered) { answer = answered ? Answer::yes : Answer::no; });
    EXPECT_TRUE(waitUntil(
        [&] {
            server.state();
            return answer != Answer::none;
        },
        60s, runEvents));
    const qint64 taken = clock.elapsed();
    std::printf("  settled after %lld ms, longest pause %lld ms\n", static_cast<long long>(taken),
                static_cast<long long>(heartbeat.longestPause()));
    EXPECT_LT(taken, 2000);
    EXPECT_LT(heartbeat.longestPause(), frozen);
    if (answer == Answer::yes && !std::string_view(pw_get_library_version()).starts_with("0.3."))
        GTEST_SKIP() << "this library asks the portal in a thread of its own, and nobody waits";
    EXPECT_EQ(answer, Answer::no) << "the portal was not asked";
    EXPECT_EQ(server.state(), AudioServerState::gone);

    portal->signal(SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return server.state() == AudioServerState::answers; }, 10s, runEvents));
}

} // namespace tolvenary::session
