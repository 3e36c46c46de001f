#include "platform/desktop/x_window_occlusion.h"
#include "tests/platform/desktop/scoped_variable.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace tolvenary
{

namespace
{

/// An X server that hangs up on whoever calls, and counts them.
class RudeXServer
{
  public:
    RudeXServer() : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *const any = reinterpret_cast<sockaddr *>(&address);
        m_listens =
            bind(m_socket, any, size) == 0 && listen(m_socket, 5) == 0 && getsockname(m_socket, any, &size) == 0;
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { hangUp(); });
    }
    ~RudeXServer() { end(); }
    RudeXServer(const RudeXServer &) = delete;
    RudeXServer &operator=(const RudeXServer &) = delete;

    /// As DISPLAY names it; nothing where it does not listen.
    std::string display() const
    {
        constexpr int firstPort = 6000;
        return m_listens && m_port >= firstPort ? "127.0.0.1:" + std::to_string(m_port - firstPort) : std::string();
    }

    /// How many have called; nobody can any more.
    int end()
    {
        if (m_thread.joinable()) {
            shutdown(m_socket, SHUT_RDWR);
            m_thread.join();
            close(m_socket);
        }
        return m_calls;
    }

  private:
    void hangUp()
    {
        for (int caller = accept(m_socket, nullptr, nullptr); caller >= 0;
             caller = accept(m_socket, nullptr, nullptr)) {
            ++m_calls;
            close(caller);
        }
    }

    int m_socket;
    bool m_listens = false;
    int m_port = 0;
    int m_calls = 0;
    std::thread m_thread;
};

} // namespace

TEST(XWindowOcclusion, callsNoXServerForAWindowThatIsNoneOfIts)
{
    RudeXServer server;
    ASSERT_NE(server.display(), "");
    const ScopedVariable display("DISPLAY", server.display());
    constexpr std::uintptr_t firstOnWayland = 1;
    XWindowOcclusion occlusion;
    occlusion.observeWindowDidChangeOcclusionState(firstOnWayland, [](bool) {});
    EXPECT_EQ(server.end(), 0);
}

} // namespace tolvenary
