#pragma once

#include "platform/desktop/application_unit.h"
#include "platform/desktop/desktop_entry.h"
#include "platform/desktop/process_table.h"

#include <span>
#include <string>
#include <unordered_map>

namespace tolvenary
{

/// Finds the desktop entry to which a process belongs. The entries outlive it. Thread: any one.
class ApplicationMatcher
{
  public:
    explicit ApplicationMatcher(std::span<const DesktopEntry> entries);

    /// The entry with the longest of the unit's candidate ids.
    const DesktopEntry *entryOf(const ApplicationUnit &unit) const;

    /// The entry whose command the process runs. Where several start the same program, the one with most of its
    /// arguments in the process's, then the one that misses fewest, then the first.
    const DesktopEntry *entryOf(const Process &process) const;

  private:
    std::unordered_map<std::string, const DesktopEntry *> m_byID;
    std::unordered_multimap<std::string, const DesktopEntry *> m_byProgram;
};

} // namespace tolvenary
