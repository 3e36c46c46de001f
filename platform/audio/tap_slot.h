#pragma once

#include "platform/audio/av_audio_pcm_buffer.h"

#include <atomic>
#include <functional>

namespace tolvenary
{

/// Where a tap hangs: the main thread installs and removes it while the capturing thread may be in it, without making
/// that thread wait.
class TapSlot
{
  public:
    using Block = std::function<void(const AVAudioPCMBuffer &buffer, const AudioTimeStamp &when)>;

    TapSlot() = default;
    ~TapSlot() { remove(); }
    TapSlot(const TapSlot &) = delete;
    TapSlot &operator=(const TapSlot &) = delete;

    /// Replaces an earlier tap. A format of too many channels for a view installs none. Thread: main.
    void install(const AVAudioFormat &format, Block block);

    /// When this has returned, the block is not running and will not be called again, and it is destroyed. Must not be
    /// called by the block itself. Thread: main.
    void remove();

    /// Shows the block to the tap, if there is one; a block with fewer channels than the tap's format is skipped.
    /// Thread: the capturing one. real-time
    void deliver(const AudioTimeStamp &when, ConstPlanarBlock input);

  private:
    struct Tap {
        std::unique_ptr<AVAudioPCMBuffer> view;
        Block block;
    };

    std::unique_ptr<Tap> m_owned;
    std::atomic<Tap *> m_current{nullptr};
    std::atomic<bool> m_delivering{false};
};

} // namespace tolvenary
