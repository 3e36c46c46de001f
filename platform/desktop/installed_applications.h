#pragma once

#include "platform/desktop/desktop_entry.h"

#include <vector>

namespace tolvenary
{

/// The entries of the XDG data directories that this desktop's menus show, in the order of their ids. The first call
/// reads every entry's file. Thread: any but the main one.
std::vector<DesktopEntry> installedApplications();

} // namespace tolvenary
