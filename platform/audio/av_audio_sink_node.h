#pragma once

#include "platform/audio/av_audio_node.h"
#include "platform/os_status.h"

#include <functional>

namespace tolvenary
{

/// Takes what an input node captures, block by block.
class AVAudioSinkNode final : public AVAudioNode
{
  public:
    /// real-time; the blocks are borrowed for the call.
    using ReceiverBlock =
        std::function<OSStatus(const AudioTimeStamp &timestamp, std::uint32_t frameCount, ConstPlanarBlock inputData)>;

    explicit AVAudioSinkNode(ReceiverBlock receiver) : m_receiver(std::move(receiver)) {}

    OSStatus receive(const AudioTimeStamp &when, ConstPlanarBlock input) // real-time
    {
        return m_receiver(when, input.frames, input);
    }

  private:
    ReceiverBlock m_receiver;
};

} // namespace tolvenary
