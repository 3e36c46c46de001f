#pragma once

#include "platform/audio_units.h"
#include "platform/pipewire/microphone_sign.h"
#include "platform/pipewire/session_node.h"

#include <memory>

namespace tolvenary
{

/// Our microphone node, linked from the default source, whichever that is at the time.
class PipeWireInputUnit final : public AudioInputUnit
{
  public:
    explicit PipeWireInputUnit(GraphSession &session) : m_session(session) {}

    InputUnitFormat inputFormat() override;
    OSStatus AudioOutputUnitStart(CaptureCallback capture) override;
    OSStatus AudioOutputUnitStop() override;

  private:
    void process(const Cycle &cycle); // real-time

    GraphSession &m_session;
    CaptureCallback m_capture;
    std::unique_ptr<MicrophonePorts> m_ports;
    std::unique_ptr<SessionNode> m_node; // its cycles use all of the above
    std::unique_ptr<MicrophoneSign> m_sign;
};

} // namespace tolvenary
