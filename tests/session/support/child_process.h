#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tolvenary::session
{

using Arguments = std::vector<std::string>;

/// A program that a test started. It does not outlive its owner: the destructor ends it, and the kernel does if the
/// test dies first. What it prints goes into a file.
class ChildProcess
{
  public:
    /// Throws std::runtime_error when the program cannot be started.
    ChildProcess(const Arguments &command, std::filesystem::path log);
    ~ChildProcess();

    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    pid_t pid() const { return m_pid; }
    bool isRunning();
    /// Status as waitpid() gives it; empty when the program still runs after `patience`.
    std::optional<int> waitForEnd(std::chrono::milliseconds patience);
    void signal(int number) const;
    /// SIGTERM, and SIGKILL for one that does not listen. Returns when it is gone.
    void end();

    std::string output() const;

  private:
    pid_t m_pid = -1;
    std::optional<int> m_status;
    std::filesystem::path m_log;
};

/// Runs a program to its end and returns what it printed; throws std::runtime_error when it fails or takes longer than
/// `patience`.
std::string runToEnd(const Arguments &command, std::chrono::milliseconds patience = std::chrono::seconds(30));

} // namespace tolvenary::session
