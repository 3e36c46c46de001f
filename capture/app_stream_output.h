#pragma once

#include "platform/audio/av_audio_converter.h"
#include "platform/audio/av_audio_pcm_buffer_pool.h"
#include "platform/capture_stream.h"

#include <functional>
#include <memory>
#include <optional>

namespace tolvenary
{

/// Takes the audio samples of a screen-capture stream and hands them on in one format, as ProcessAudioTap does with
/// what it taps. What cannot become a buffer is dropped silently.
///
/// Unlike a tap, whose device has one format for its life, a stream may change its format from one sample buffer to the
/// next; a new converter is made then.
///
/// Thread: the stream's queue, also for `onBuffer`. It is not a real-time thread, so converters and lists may be made
/// here when they are needed.
class AppStreamOutput final : public SCStreamOutput
{
  public:
    /// Takes each block, in the target format. The buffer is new for the call and the callee's to keep.
    using OnBuffer = std::function<void(AVAudioPCMBufferPtr buffer)>;

    /// The pool outlives the output and the buffers.
    AppStreamOutput(AVAudioPCMBufferPool &pool, const AVAudioFormat &targetFormat, OnBuffer onBuffer);

    void streamDidOutputSampleBufferOfType(SCStream &stream, const CMSampleBuffer &sampleBuffer,
                                           SCStreamOutputType type) override;

    /// The one in use; null before anything had to be converted, or if that is impossible.
    const AVAudioConverter *converter() const { return m_converter.get(); }

  private:
    AVAudioPCMBufferPtr pcmBufferFrom(const CMSampleBuffer &sampleBuffer);
    AVAudioPCMBufferPtr convertIfNeeded(AVAudioPCMBufferPtr buffer);
    bool prepareConverter(const AVAudioFormat &format);

    AVAudioPCMBufferPool &m_pool;
    const AVAudioFormat m_targetFormat;
    const OnBuffer m_onBuffer;
    std::unique_ptr<AVAudioConverter> m_converter;
    std::optional<AVAudioFormat> m_sourceFormat; ///< what the converter was made for
};

} // namespace tolvenary
