#pragma once

#include "platform/desktop/desktop_entry.h"

#include <string>

namespace tolvenary
{

/// Reads the Exec and TryExec values of a desktop entry (either may be empty). A program that is a link is known
/// under both names, since a process shows only where the link leads. Thread: any.
DesktopCommand parseDesktopCommand(const std::string &exec, const std::string &tryExec);

} // namespace tolvenary
