#pragma once

#include <filesystem>

namespace tolvenary
{

/// Whether the window is to be drawn by Qt Quick's software renderer. True where none of these device nodes is graphics
/// hardware that this user may use: GL would then be the processor's work too, at three times the memory and many times
/// the effort. Never against a wish that the user has put into the environment.
bool wantsSoftwareRenderer(const std::filesystem::path &devices = "/dev");

} // namespace tolvenary
