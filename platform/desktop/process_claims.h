#pragma once

#include "platform/desktop/application_matcher.h"

#include <map>
#include <optional>
#include <span>
#include <string>

namespace tolvenary
{

/// What is known of one process: to which application it belongs, and which process stands for that application.
struct ProcessClaim {
    const Process *process = nullptr;
    std::optional<ApplicationUnit> unit;
    const DesktopEntry *entry = nullptr; ///< none for a process of no listed application
    bool runsItsProgram = false;         ///< the entry's command names this very program
    std::int32_t main = 0;               ///< the main process of the application's instance
};

/// All processes of a moment, each with its application. An application of many processes has one main process: the
/// topmost one of its entry, and among several such in one unit the one that runs the entry's program, then the
/// oldest. The processes and the matcher's entries outlive it. Thread: any one.
class ProcessClaims
{
  public:
    ProcessClaims(std::span<const Process> processes, const ApplicationMatcher &matcher);

    /// Null for a process that is not there.
    const ProcessClaim *find(std::int32_t processID) const;

    /// The claim of the process's parent, null where the parent is not there.
    const ProcessClaim *parentOf(const ProcessClaim &claim) const;

    /// By process id.
    const std::map<std::int32_t, ProcessClaim> &all() const { return m_claims; }

  private:
    void claim(ProcessClaim &claim, const ApplicationMatcher &matcher) const;
    std::int32_t topmost(const ProcessClaim &claim) const;
    void uniteUnits();

    std::map<std::int32_t, ProcessClaim> m_claims;
};

} // namespace tolvenary
