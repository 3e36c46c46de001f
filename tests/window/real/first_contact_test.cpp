#include "tests/session/support/private_session.h"
#include "tests/session/support/temporary_directory.h"
#include "tests/session/support/virtual_display.h"
#include "tests/window/real/panel_program.h"

#include <QCoreApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

// What the program says where it cannot work: one clear line, and nothing of its toolkit's.

namespace tolvenary::session
{

namespace
{

using namespace std::chrono_literals;

int argumentCount = 1;
char programName[] = "first-contact-test";
char *argumentValues[] = {programName, nullptr};

constexpr const char *noServer = "App list error: The sound server, PipeWire, is not running.";

/// A message bus, and no sound server; a screen for those who need one.
class FirstContact : public testing::Test
{
  protected:
    FirstContact() : m_application(argumentCount, argumentValues)
    {
        m_session.stopSoundServers();
        m_session.environment().unset("QT_QPA_PLATFORM");
    }

    PrivateSession &session() { return m_session; }

    /// All that the program prints on its way to a failure; its exit status is looked at on the way.
    std::string failureOfAStart()
    {
        const auto program = m_session.start({TOLVENARY_PROGRAM});
        const std::optional<int> status = program->waitForEnd(20s);
        EXPECT_TRUE(status && WIFEXITED(*status) && WEXITSTATUS(*status) == EXIT_FAILURE)
            << "it ended by a signal, or not at all";
        return program->output();
    }

    /// Opens the window without a sound server, and returns what the program prints meanwhile.
    std::string openWindow()
    {
        PanelProgram program(m_session, {{"QT_QPA_PLATFORM", "xcb"}});
        EXPECT_NO_THROW(program.window().await(noServer, "notification"));
        program.process().end();
        EXPECT_EQ(program.process().waitForEnd(0s), 0) << "it did not end well";
        return program.messages();
    }

  private:
    PrivateSession m_session;
    QCoreApplication m_application;
};

/// A socket that accepts and never says a word, where the pulse daemon's would be.
class MutePulseDaemon
{
  public:
    explicit MutePulseDaemon(const std::filesystem::path &path)
        : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        std::filesystem::create_directories(path.parent_path());
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.string().copy(address.sun_path, sizeof address.sun_path - 1);
        if (bind(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
            listen(m_socket, 8) != 0)
            throw std::runtime_error("no pulse socket");
    }
    ~MutePulseDaemon() { close(m_socket); }
    MutePulseDaemon(const MutePulseDaemon &) = delete;
    MutePulseDaemon &operator=(const MutePulseDaemon &) = delete;

  private:
    int m_socket;
};

} // namespace

TEST_F(FirstContact, inAConsoleItSaysThatThereIsNoDesktop)
{
    EXPECT_EQ(failureOfAStart(),
              "tolvenary: there is no desktop session here (WAYLAND_DISPLAY and DISPLAY are not set). "
              "Start it from a desktop.\n");
}

TEST_F(FirstContact, onADisplayThatIsNotThereItNamesTheDisplay)
{
    session().environment().set("DISPLAY", ":9876");
    EXPECT_EQ(failureOfAStart(), "tolvenary: the desktop session at DISPLAY=:9876 cannot be reached.\n");
    session().environment().set("WAYLAND_DISPLAY", "wayland-9876");
    EXPECT_EQ(failureOfAStart(), "tolvenary: the desktop session at WAYLAND_DISPLAY=wayland-9876 cannot be reached.\n");
}

TEST_F(FirstContact, withoutPipeWireTheStatusSaysSo)
{
    const VirtualDisplay display(session());
    EXPECT_EQ(openWindow(), "");
}

TEST_F(FirstContact, withAPulseDaemonOnlyTheStatusNamesPipeWire)
{
    const VirtualDisplay display(session());
    const MutePulseDaemon daemon(session().environment().runtime() / "pulse/native");
    EXPECT_EQ(openWindow(), "");
}

TEST_F(FirstContact, inAnotherUsersRuntimeDirectoryOneLineTellsWhose)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can make another user's directory";
    const VirtualDisplay display(session());
    const TemporaryDirectory other;
    constexpr uid_t nobody = 65534;
    ASSERT_EQ(chown(other.path().c_str(), nobody, nobody), 0);
    session().environment().set("XDG_RUNTIME_DIR", other.path());
    EXPECT_EQ(openWindow(), "tolvenary: XDG_RUNTIME_DIR=" + other.path().string() +
                                " is another user's: start it as the user whose desktop this is.\n");
}

TEST_F(FirstContact, withoutARuntimeDirectoryOneLineTellsSo)
{
    const VirtualDisplay display(session());
    session().environment().unset("XDG_RUNTIME_DIR");
    EXPECT_EQ(openWindow(), "tolvenary: XDG_RUNTIME_DIR is not set: no sound server can be found.\n");
}

TEST_F(FirstContact, withARuntimeDirectoryThatIsNotThereOneLineTellsSo)
{
    const VirtualDisplay display(session());
    const TemporaryDirectory folder;
    const std::string missing = folder.path() / "missing";
    session().environment().set("XDG_RUNTIME_DIR", missing);
    EXPECT_EQ(openWindow(),
              "tolvenary: XDG_RUNTIME_DIR=" + missing + " does not exist: no sound server can be found.\n");
}

} // namespace tolvenary::session
