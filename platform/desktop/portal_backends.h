#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tolvenary
{

/// Where a desktop says which of the installed portal backends it wants; the most important directories come first.
struct PortalDirectories {
    std::vector<std::string> configuration; ///< with portals.conf files
    std::vector<std::string> data;          ///< with a folder "portals" of backends' descriptions
    std::vector<std::string> desktops;      ///< lower case, the most specific first
};

/// Those of the environment's XDG directories and XDG_CURRENT_DESKTOP, as they are now.
PortalDirectories portalDirectories();

/// The bus name of the backend that the desktop has chosen for an interface: by its portals.conf, else by what the
/// backend says of itself, else the common one. Nothing when none offers the interface or the user wants none.
std::optional<std::string> portalBackendFor(const std::string &interface, const PortalDirectories &directories);

} // namespace tolvenary
