#pragma once

#include "tests/session/support/temporary_directory.h"

#include <map>
#include <optional>
#include <string>

namespace tolvenary::session
{

/// Gives this process, and all that it starts from now on, a home and runtime directories of its own, so that nothing
/// of the user's session is seen or changed. The old environment comes back at the end.
/// To be made before any other thread runs: the environment is not thread-safe.
class PrivateEnvironment
{
  public:
    PrivateEnvironment();
    ~PrivateEnvironment();

    PrivateEnvironment(const PrivateEnvironment &) = delete;
    PrivateEnvironment &operator=(const PrivateEnvironment &) = delete;

    void set(const std::string &name, const std::string &value);
    void unset(const std::string &name);

    std::filesystem::path root() const { return m_directory.path(); }
    std::filesystem::path runtime() const { return m_directory.path() / "run"; }
    std::filesystem::path configuration() const { return m_directory.path() / "config"; }

  private:
    void remember(const std::string &name);

    TemporaryDirectory m_directory;
    std::map<std::string, std::optional<std::string>> m_before;
};

} // namespace tolvenary::session
