#pragma once

#include "platform/audio/av_audio_format.h"

#include <memory>

struct SwrContext;

namespace tolvenary
{

/// One libswresample context from a format to another: a long, steep filter where the rates differ, plain copying where
/// they do not, and our own rule for channels. One thread at a time.
class SwrStream
{
  public:
    /// Length of the filter, in frames of the lower of the two rates.
    static constexpr int filterFrames = 160;

    /// The filter grows with the ratio of the rates, and with it the delay; no two devices are this far apart.
    static constexpr double greatestRatio = 32;

    /// Empty when libswresample cannot do it, a rate that would have to be converted is not a whole number, or the
    /// rates are too far apart.
    static std::unique_ptr<SwrStream> make(const AVAudioFormat &from, const AVAudioFormat &to);

    /// Takes all `inFrames` in and writes what is ready, at most `outFrames`. Returns the frames written, or a negative
    /// errno. Allocates only for blocks longer than any before. real-time
    std::int32_t convert(ConstAudioBufferList in, std::uint32_t inFrames, AudioBufferList out, std::uint32_t outFrames);

  private:
    struct Free {
        void operator()(SwrContext *context) const;
    };

    explicit SwrStream(std::unique_ptr<SwrContext, Free> context) : m_context(std::move(context)) {}

    std::unique_ptr<SwrContext, Free> m_context;
};

} // namespace tolvenary
