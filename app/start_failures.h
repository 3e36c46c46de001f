#pragma once

namespace tolvenary
{

/// From now on, a start that must fail because no desktop can be reached ends the program with status 1 and one line on
/// standard error, where Qt would print several and leave a core dump. A runtime directory that cannot hold this user's
/// sound server is reported in one line as well; the program goes on, and its status line says the rest. Call it before
/// the application object is made. Thread: main.
void tellStartFailuresInOneLine();

} // namespace tolvenary
