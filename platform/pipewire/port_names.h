#pragma once

#include <array>

namespace tolvenary
{

/// The names of our own nodes' ports, by which the link plan finds them.
namespace port_names
{
inline constexpr const char *order = "order"; ///< carries no sound, only who runs before whom
inline constexpr const char *left = "FL";
inline constexpr const char *right = "FR";
inline constexpr const char *mono = "MONO";
inline constexpr const char *center = "FC";
inline constexpr const char *surroundLeft = "SL";
inline constexpr const char *surroundRight = "SR";
/// With the channel's number behind it: the microphone node has its inputs twice.
inline constexpr std::array<const char *, 2> microphoneSets{"input_", "other_"};

/// Of left and right a tap has several ports, for the server adds up at most 128 links at one.
inline constexpr std::array lefts{left, "FL.2", "FL.3", "FL.4"};
inline constexpr std::array rights{right, "FR.2", "FR.3", "FR.4"};
} // namespace port_names

} // namespace tolvenary
