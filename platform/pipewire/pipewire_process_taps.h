#pragma once

#include "platform/pipewire/graph_session.h"
#include "platform/process_taps.h"

namespace tolvenary
{

class PipeWireProcessTaps final : public ProcessTaps
{
  public:
    explicit PipeWireProcessTaps(GraphSession &session) : m_session(session) {}

    OSStatus AudioHardwareCreateProcessTap(const CATapDescription &description, AudioObjectID &outTap) override;
    OSStatus AudioHardwareDestroyProcessTap(AudioObjectID tap) override;

    struct Tap {
        std::string uid;
        std::set<std::int32_t> excludedProcesses;
    };
    const Tap *tap(AudioObjectID id) const;
    const Tap *tapWithUid(const std::string &uid) const;

  private:
    GraphSession &m_session;
    std::map<AudioObjectID, Tap> m_taps;
};

} // namespace tolvenary
