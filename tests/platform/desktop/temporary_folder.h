#pragma once

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <stdlib.h>
#include <string>

namespace tolvenary
{

/// A folder of a test's own, gone with it.
class TemporaryFolder
{
  public:
    TemporaryFolder()
    {
        auto pattern = (std::filesystem::temp_directory_path() / "tolvenary-test-XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            throw std::runtime_error("no temporary folder");
        m_path = pattern;
    }
    ~TemporaryFolder()
    {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
    }
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    const std::filesystem::path &path() const { return m_path; }

    std::filesystem::path write(const std::filesystem::path &file, const std::string &content) const
    {
        auto path = m_path / file;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

    std::filesystem::path writeProgram(const std::filesystem::path &file, const std::string &content = {}) const
    {
        auto path = write(file, content);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }

  private:
    std::filesystem::path m_path;
};

} // namespace tolvenary
