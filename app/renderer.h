#pragma once

#include <filesystem>

namespace tolvenary
{

/// Whether Qt Quick's software renderer shall draw the window. True if none of these device nodes is graphics hardware
/// that this user may use: GL would then be the processor's work, too, with three times the memory and many times the
/// effort. Never against a choice that the user has made in the environment.
bool wantsSoftwareRenderer(const std::filesystem::path &devices = "/dev");

} // namespace tolvenary
