#include "platform/desktop/application_unit.h"

#include <algorithm>
#include <charconv>

namespace tolvenary
{

namespace
{

constexpr std::string_view unitPrefix = "app-";

/// Undoes systemd's escaping of unit names: `\x2d` stands for the byte 0x2d.
std::string unescaped(std::string_view text)
{
    std::string result;
    while (!text.empty()) {
        unsigned char byte = 0;
        const auto digits = text.starts_with("\\x") ? text.substr(2, 2) : std::string_view();
        if (digits.size() == 2 && std::from_chars(digits.begin(), digits.end(), byte, 16).ptr == digits.end()) {
            result += static_cast<char>(byte);
            text.remove_prefix(4);
        } else {
            result += text.front();
            text.remove_prefix(1);
        }
    }
    return result;
}

/// A unit's name without its prefix, its random part and its type; empty when it is not an application's.
std::string_view launcherAndID(std::string_view unit)
{
    if (!unit.starts_with(unitPrefix))
        return {};
    unit.remove_prefix(unitPrefix.size());
    if (unit.ends_with(".scope"))
        return unit.substr(0, unit.find('-') == std::string_view::npos ? 0 : unit.rfind('-'));
    if (!unit.ends_with(".service"))
        return {};
    unit.remove_suffix(std::string_view(".service").size());
    return unit.substr(0, unit.find('@'));
}

std::vector<std::string> candidatesIn(std::string_view launcherAndID)
{
    std::vector<std::string> candidates;
    while (!launcherAndID.empty()) {
        candidates.push_back(unescaped(launcherAndID));
        const auto dash = launcherAndID.find('-');
        launcherAndID = dash == std::string_view::npos ? std::string_view() : launcherAndID.substr(dash + 1);
    }
    return candidates;
}

/// The line of the unified hierarchy; the numbered ones before it belong to the old controllers.
std::string_view unifiedPath(std::string_view cgroup)
{
    while (!cgroup.empty()) {
        const auto line = cgroup.substr(0, cgroup.find('\n'));
        if (line.starts_with("0::"))
            return line.substr(3);
        cgroup.remove_prefix(std::min(line.size() + 1, cgroup.size()));
    }
    return {};
}

} // namespace

std::optional<ApplicationUnit> applicationUnitOf(std::string_view cgroup)
{
    // Units nest; the innermost one is the application's own.
    auto path = unifiedPath(cgroup);
    while (!path.empty()) {
        const auto slash = path.find_last_of('/');
        const auto unit = slash == std::string_view::npos ? path : path.substr(slash + 1);
        if (auto candidates = candidatesIn(launcherAndID(unit)); !candidates.empty())
            return ApplicationUnit{std::string(unit), std::move(candidates)};
        path = slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
    }
    return std::nullopt;
}

} // namespace tolvenary
