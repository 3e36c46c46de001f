#pragma once

#include <cstdint>

namespace tolvenary
{

/// The result of a platform operation: 0 for success, otherwise a negative errno.
using OSStatus = std::int32_t;

inline constexpr OSStatus noErr = 0;

} // namespace tolvenary
