#include "app/quit_signals.h"

#include <QCoreApplication>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace tolvenary
{

namespace
{

// A signal handler can reach only what lives outside of every object.
std::array<int, 2> pipeEnds{-1, -1}; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

void passOn(int)
{
    const int interrupted = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(pipeEnds[1], &byte, 1);
    errno = interrupted;
}

void handle(int signal, void (*handler)(int))
{
    struct sigaction action {
    };
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

} // namespace

QuitSignals::QuitSignals()
{
    if (pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = std::make_unique<QSocketNotifier>(pipeEnds[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(), [this] {
        m_notifier->setEnabled(false);
        QCoreApplication::quit();
    });
    handle(SIGINT, passOn);
    handle(SIGTERM, passOn);
}

QuitSignals::~QuitSignals()
{
    if (!m_notifier)
        return;
    handle(SIGINT, SIG_DFL);
    handle(SIGTERM, SIG_DFL);
    m_notifier.reset();
    for (int &end : pipeEnds) {
        close(end);
        end = -1;
    }
}

} // namespace tolvenary
