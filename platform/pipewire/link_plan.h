#pragma once

#include "platform/pipewire/graph.h"

#include <array>
#include <set>

namespace tolvenary
{

/// The names of our own nodes' ports, by which the plan finds them.
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

/// What our nodes ask for.
struct OutputWish {
    GlobalId nodeId = 0;
    std::string deviceName; ///< follows the name: a device that goes away and comes back is fed again
};
struct InputWish {
    GlobalId nodeId = 0;
    bool isInOrder = true; ///< the output waits for it in each cycle
    std::size_t set = 0;   ///< of its ports, for the microphone
    /// Serial of the microphone of before, still heard at the other set; its id may be another's when it has gone.
    std::optional<std::uint64_t> leaving = std::nullopt;
    bool isMicrophoneHeld = false; ///< not to be linked for now
};
struct TapWish {
    GlobalId nodeId = 0;
    std::set<std::int32_t> excludedProcesses;
    std::set<GlobalId> heldStreams; ///< not to be linked for now
    bool isInOrder = true;
    std::optional<std::int32_t> onlyProcess = std::nullopt; ///< nobody else's streams
};
struct ProbeWish {
    GlobalId nodeId = 0;
    GlobalId stream = 0;
};
struct LinkWishes {
    std::vector<OutputWish> outputs;
    std::vector<InputWish> inputs;
    std::vector<TapWish> taps;
    std::vector<ProbeWish> probes = {};
};

/// The default source; none where that is a sink's monitor, or delivers our own mix.
const GraphNode *microphoneOf(const Graph &graph, const LinkWishes &wishes);

/// The streams that the tap is to hear, held back or not.
std::set<GlobalId> tappedStreams(const Graph &graph, const TapWish &wish);

/// Every link that should be there now.
std::set<GraphLink> planLinks(const Graph &graph, const LinkWishes &wishes);

} // namespace tolvenary
