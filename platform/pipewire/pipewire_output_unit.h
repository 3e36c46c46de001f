#pragma once

#include "platform/audio_units.h"
#include "platform/pipewire/session_node.h"

#include <memory>

namespace tolvenary
{

/// Our playback node. It is in the graph as soon as it is bound to a device, silent until it is started; it stays bound
/// to the device's name while that goes away and comes back, and plays nowhere else.
class PipeWireOutputUnit final : public AudioOutputUnit
{
  public:
    explicit PipeWireOutputUnit(GraphSession &session) : m_session(session) {}

    OSStatus AudioUnitSetProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element, const void *data,
                                  std::uint32_t size) override;
    OSStatus AudioUnitGetProperty(std::uint32_t property, std::uint32_t scope, std::uint32_t element, void *outData,
                                  std::uint32_t &ioSize) override;
    double sampleRate() override;
    OSStatus AudioOutputUnitStart(RenderCallback render) override;
    OSStatus AudioOutputUnitStop() override;

  private:
    OSStatus bind(AudioObjectID device);
    void process(const Cycle &cycle); // real-time

    GraphSession &m_session;
    RenderCallback m_render;
    std::vector<float> m_left;
    std::vector<float> m_right;
    std::unique_ptr<SessionNode> m_node; // declared last: its cycles use all of the above
};

} // namespace tolvenary
