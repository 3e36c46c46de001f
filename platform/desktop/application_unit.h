#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvenary
{

/// The systemd unit in which a desktop started an application, and the application ids that its name may carry.
struct ApplicationUnit {
    std::string name;
    std::vector<std::string> candidateIDs; ///< longest first

    friend bool operator==(const ApplicationUnit &, const ApplicationUnit &) = default;
};

/// Reads the text of a process's cgroup file. Desktops name their units `app[-LAUNCHER]-ID-RANDOM.scope` or
/// `app[-LAUNCHER]-ID[@RANDOM].service`, but do not all escape the dashes inside an id, so that only the installed
/// entries can tell which of the candidates is meant. Nothing for a process outside such a unit.
std::optional<ApplicationUnit> applicationUnitOf(std::string_view cgroup);

} // namespace tolvenary
