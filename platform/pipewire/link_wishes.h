#pragma once

#include "platform/pipewire/graph.h"

#include <set>

namespace tolvenary
{

/// What our nodes ask for.
struct OutputWish {
    GlobalId nodeId = 0;
    std::string deviceName; ///< follows the name: a device that goes away and comes back is fed again
};
struct InputWish {
    GlobalId nodeId = 0;
    bool isInOrder = true; ///< the output waits for it in each cycle
    std::size_t set = 0;   ///< of its ports, into which the microphone goes
    /// Serial of the previous microphone, still heard at the other set. (When it has gone, its id may be another's.)
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

} // namespace tolvenary
