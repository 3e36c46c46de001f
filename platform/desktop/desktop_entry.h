#pragma once

#include <string>
#include <vector>

namespace tolvenary
{

/// How a desktop entry starts its application, without the field codes that stand for files and icons.
struct DesktopCommand {
    std::vector<std::string> programs; ///< file names under which the program may run
    std::vector<std::string> operands; ///< arguments that are no options: a process of the entry carries them all
    std::vector<std::string> options;  ///< a process of the entry may carry them
};

/// An application as the desktop's menus show it.
struct DesktopEntry {
    std::string id;   ///< without ".desktop"
    std::string name; ///< in the user's language
    DesktopCommand command;
};

} // namespace tolvenary
