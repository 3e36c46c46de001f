#pragma once

#include "platform/audio_types.h"
#include "platform/os_status.h"

#include <string>

namespace tolvenary
{

/// What a tap shall hear: everything that any process plays, as stereo, but for the listed process objects.
struct CATapDescription {
    std::vector<AudioObjectID> stereoGlobalTapButExcludeProcesses;
    std::string uuid;
    bool isPrivate = false;
    bool isExclusive = true;
};

/// Makes and destroys process taps. A tap is a standing order: it also covers processes and streams that come later.
/// Nothing flows until an aggregate device around the tap is started. Thread: main.
class ProcessTaps
{
  public:
    virtual ~ProcessTaps() = default;

    virtual OSStatus AudioHardwareCreateProcessTap(const CATapDescription &description, AudioObjectID &outTap) = 0;
    virtual OSStatus AudioHardwareDestroyProcessTap(AudioObjectID tap) = 0;
};

} // namespace tolvenary
