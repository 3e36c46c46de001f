#include "tests/window/private_screen.h"

#include "tests/core/event_loop.h"
#include "tests/session/support/wait_until.h"

#include <QAccessible>
#include <QDBusConnection>
#include <QDBusMessage>

#include <stdexcept>

namespace tolvenary::test
{

namespace
{

/// The first line of those that a program prints which `accept` takes; throws when none comes.
template <typename Accept> std::string awaitLine(const session::ChildProcess &program, Accept accept)
{
    std::string line;
    const auto isThere = [&] {
        const std::string output = program.output();
        for (std::size_t begin = 0, end = 0; (end = output.find('\n', begin)) != std::string::npos; begin = end + 1)
            if (line = output.substr(begin, end - begin); accept(line))
                return true;
        return false;
    };
    if (!session::waitUntil(isThere, std::chrono::seconds(20)))
        throw std::runtime_error("not started: " + program.output());
    return line;
}

bool isNumber(const std::string &line)
{
    return !line.empty() && line.find_first_not_of("0123456789") == std::string::npos;
}

bool isAddress(const std::string &line)
{
    return line.rfind("unix:", 0) == 0;
}

} // namespace

PrivateScreen::PrivateScreen(bool withGL)
{
    m_bus = start({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1"});
    const std::string address = awaitLine(*m_bus, isAddress);
    m_environment.set("DBUS_SESSION_BUS_ADDRESS", address);
    m_environment.set("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
    m_server = start({"Xvfb", "-displayfd", "1", "-screen", "0", "1280x1000x24", "-nocursor", "-nolisten", "tcp"});
    m_environment.set("DISPLAY", ":" + awaitLine(*m_server, isNumber));
    m_environment.set("QT_QPA_PLATFORM", "xcb");
    if (withGL)
        m_environment.set("QSG_RHI_BACKEND", "opengl");
    else
        m_environment.set("QT_QUICK_BACKEND", "software");
}

void PrivateScreen::bringAssistiveTools()
{
    // The application turns to the accessibility bus when somebody else has called for it.
    const QDBusMessage answer = QDBusConnection::sessionBus().call(
        QDBusMessage::createMethodCall("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress"));
    if (answer.type() != QDBusMessage::ReplyMessage)
        throw std::runtime_error("no accessibility bus: " + answer.errorMessage().toStdString());
    if (!waitUntil([] { return QAccessible::isActive(); }))
        throw std::runtime_error("the application does not talk to assistive tools");
}

void PrivateScreen::manageWindows()
{
    m_windowManager = start({"openbox"});
}

std::unique_ptr<session::ChildProcess> PrivateScreen::start(const session::Arguments &command)
{
    return std::make_unique<session::ChildProcess>(command, m_environment.root() / (command.front() + ".log"));
}

} // namespace tolvenary::test
