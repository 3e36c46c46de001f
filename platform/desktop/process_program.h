#pragma once

#include "platform/desktop/process_table.h"

#include <string>
#include <vector>

namespace tolvenary
{

/// Whether a program of this file name runs other programs' scripts, so that its own name tells nothing.
bool isInterpreter(const std::string &program);

/// The file names under which a desktop entry may know the program of a process: that of the executable, and for an
/// interpreter that of the script.
std::vector<std::string> programsOf(const Process &process);

} // namespace tolvenary
