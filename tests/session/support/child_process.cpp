#include "tests/session/support/child_process.h"

#include "tests/session/support/temporary_directory.h"
#include "tests/session/support/wait_until.h"

#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tolvenary::session
{

namespace
{

/// Runs in the child, between fork and exec: only calls that are safe there.
[[noreturn]] void becomeProgram(char *const *arguments, const char *log, pid_t parent)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(126);
    const int file = open(log, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    dup2(nothing, STDIN_FILENO);
    dup2(file, STDOUT_FILENO);
    dup2(file, STDERR_FILENO);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    execvp(arguments[0], arguments);
    _exit(127);
}

std::string contents(const std::filesystem::path &file)
{
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

} // namespace

ChildProcess::ChildProcess(const Arguments &command, std::filesystem::path log) : m_log(std::move(log))
{
    std::vector<char *> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string &argument : command)
        arguments.push_back(const_cast<char *>(argument.c_str()));
    arguments.push_back(nullptr);

    const pid_t parent = getpid();
    m_pid = fork();
    if (m_pid < 0)
        throw std::runtime_error("cannot fork for " + command.front());
    if (m_pid == 0)
        becomeProgram(arguments.data(), m_log.c_str(), parent);
}

ChildProcess::~ChildProcess()
{
    end();
}

bool ChildProcess::isRunning()
{
    return !waitForEnd(std::chrono::milliseconds(0));
}

std::optional<int> ChildProcess::waitForEnd(std::chrono::milliseconds patience)
{
    waitUntil(
        [this] {
            int status = 0;
            if (!m_status && waitpid(m_pid, &status, WNOHANG) == m_pid)
                m_status = status;
            return m_status.has_value();
        },
        patience);
    return m_status;
}

void ChildProcess::signal(int number) const
{
    if (!m_status)
        kill(m_pid, number);
}

void ChildProcess::end()
{
    signal(SIGTERM);
    signal(SIGCONT);
    if (waitForEnd(std::chrono::seconds(3)))
        return;
    signal(SIGKILL);
    waitForEnd(std::chrono::seconds(10));
}

std::string ChildProcess::output() const
{
    return contents(m_log);
}

std::string runToEnd(const Arguments &command, std::chrono::milliseconds patience)
{
    const TemporaryDirectory directory;
    ChildProcess program(command, directory.path() / "output");
    const auto status = program.waitForEnd(patience);
    if (!status || *status != 0)
        throw std::runtime_error(command.front() + (status ? " failed: " : " did not end: ") + program.output());
    return program.output();
}

} // namespace tolvenary::session
