#pragma once

#include "platform/audio/av_audio_node.h"
#include "platform/audio/av_audio_pcm_buffer.h"
#include "platform/audio/delay_guard.h"
#include "platform/audio/scheduled_frames.h"

#include <atomic>
#include <functional>

namespace tolvenary
{

/// Plays the buffers scheduled on it, one after the other, without a gap. One thread schedules, one renders.
///
/// In a graph cycle what was captured is scheduled first and rendered right after, so the queue is empty when the cycle
/// ends. Frames that stay in it over several cycles are delay (a late wake-up left them there): the player skips them,
/// faded over one block. Where a rate is converted a cycle may be a frame short and the next a frame over:
/// setCushion() says how many frames may wait for that.
class AVAudioPlayerNode final : public AVAudioNode
{
  public:
    using CompletionHandler = std::function<void()>;

    AVAudioPlayerNode();
    ~AVAudioPlayerNode() override;

    /// Queues a stereo buffer of the connection's format; when the queue is full the buffer is dropped. A completion
    /// handler, if any, is called on the rendering thread when the buffer has been played. real-time
    void scheduleBuffer(AVAudioPCMBufferPtr buffer, CompletionHandler completionHandler);

    /// Until play(), and after stop(), silence is rendered and the queue stands. Thread: main.
    void play();
    void stop();
    bool isPlaying() const;

    /// Drops what is queued. Thread: main, while nobody renders or schedules.
    void reset();

    /// The least cushion; where the engine converts a rate the player has one in any case. Thread: main, before the
    /// run.
    void setCushion(std::uint32_t frames);

    /// Two channels.
    void render(PlanarBlock output) override;

  private:
    void prepare(std::uint32_t maxFrames, bool rateIsConverted) override;
    void detached() override;

    std::uint32_t leadIn();
    std::uint32_t playQueued(PlanarBlock output);
    void playSkipping(PlanarBlock output);
    void copyQueued(PlanarBlock output, std::uint32_t frames) const;

    // The scheduling thread writes to the queue; all below it is the rendering thread's.
    SpscRing<ScheduledBuffer> m_queue;
    ScheduledFrames m_frames;
    DelayGuard m_guard;
    std::uint32_t m_toSkip = 0;
    std::uint32_t m_silenceFirst = 0; ///< frames of the cushion that are still to come before the queue's
    bool m_ranDry = true;

    std::uint32_t m_toldCushion = 0;
    std::uint32_t m_cushion = 0;
    std::atomic<bool> m_playing{false};
};

} // namespace tolvenary
