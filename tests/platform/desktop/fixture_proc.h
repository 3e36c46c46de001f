#pragma once

#include "platform/desktop/process_table.h"
#include "tests/platform/desktop/temporary_folder.h"

#include <unistd.h>

namespace tolvenary
{

/// A proc file system with the processes that a test wants.
class FixtureProc
{
  public:
    const std::filesystem::path &path() const { return m_folder.path(); }

    void add(const Process &process, std::uint32_t user = geteuid(), char state = 'S') const
    {
        const std::filesystem::path directory = std::to_string(process.id);
        const auto uid = std::to_string(user);
        m_folder.write(directory / "status", "Name:\tfixture\nUmask:\t0022\nState:\t" + std::string(1, state) +
                                                 " (sleeping)\nPPid:\t" + std::to_string(process.parent) + "\nUid:\t" +
                                                 uid + "\t0\t0\t0\n");
        m_folder.write(directory / "cgroup", process.cgroup);
        std::string cmdline;
        for (const auto &argument : process.arguments)
            cmdline += argument + '\0';
        m_folder.write(directory / "cmdline", cmdline);
        if (!process.executable.empty())
            std::filesystem::create_symlink(process.executable, m_folder.path() / directory / "exe");
    }

    const TemporaryFolder &folder() const { return m_folder; }

  private:
    TemporaryFolder m_folder;
};

} // namespace tolvenary
