#pragma once

#include <filesystem>

namespace tolvenary::session
{

/// A directory of its own, mode 0700, removed with all in it.
class TemporaryDirectory
{
  public:
    TemporaryDirectory();
    ~TemporaryDirectory();

    TemporaryDirectory(const TemporaryDirectory &) = delete;
    TemporaryDirectory &operator=(const TemporaryDirectory &) = delete;

    const std::filesystem::path &path() const { return m_path; }

  private:
    std::filesystem::path m_path;
};

} // namespace tolvenary::session
