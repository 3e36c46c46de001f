#pragma once

#include "platform/error.h"

#include <cstdint>
#include <vector>

namespace tolvenary
{

/// A process that holds a sound stream, as the sound server knows it.
struct AudioClient {
    std::int32_t processID = 0;
    std::string applicationName;
    std::string binary; ///< file name of the executable, may be empty

    friend bool operator==(const AudioClient &, const AudioClient &) = default;
};

/// Lists the processes that own a stream, one record per process, in the order in which they came.
/// Thread: any but a real-time one; answers from what is known, never waits.
class AudioClients
{
  public:
    virtual ~AudioClients() = default;

    /// Fails when the sound server cannot be reached.
    virtual Result<std::vector<AudioClient>> clientsWithStreams() = 0;
};

} // namespace tolvenary
