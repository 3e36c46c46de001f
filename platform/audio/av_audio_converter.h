#pragma once

#include "platform/audio/av_audio_pcm_buffer.h"
#include "platform/error.h"
#include "platform/function_ref.h"

#include <memory>

namespace tolvenary
{

enum class AVAudioConverterInputStatus { haveData = 0, noDataNow = 1, endOfStream = 2 };
enum class AVAudioConverterOutputStatus { haveData = 0, inputRanDry = 1, endOfStream = 2, error = 3 };

/// Supplies the next block, or says that there is none. `inNumberOfPackets` is how many frames are wanted. The block
/// must stay valid until the next one is asked for, or the conversion returns.
using AVAudioConverterInputBlock =
    FunctionRef<const AVAudioPCMBuffer *(std::uint32_t inNumberOfPackets, AVAudioConverterInputStatus &outStatus)>;

/// Converts rate, channels and sample type as a stream: filter history and fractional position live on from call to
/// call. Mono goes to both sides at full level; of more than two channels the first two are taken.
/// One thread at a time.
class AVAudioConverter
{
  public:
    /// Empty when the formats cannot be converted. `maxInputFrames` is the longest block that conversion must take
    /// without allocating: the constructor allocates all memory.
    static std::unique_ptr<AVAudioConverter> make(const AVAudioFormat &from, const AVAudioFormat &to,
                                                  std::uint32_t maxInputFrames = 8192);
    ~AVAudioConverter();

    const AVAudioFormat &inputFormat() const;
    const AVAudioFormat &outputFormat() const;

    /// Fills `output` up to its frameCapacity from what `input` supplies and sets its frameLength. haveData: the output
    /// is full. inputRanDry: the input answered noDataNow first; all that was ready is in the output. error: `error` is
    /// set, if given, and the output is empty. real-time
    AVAudioConverterOutputStatus convertToBuffer(AVAudioPCMBuffer &output, Error *error,
                                                 AVAudioConverterInputBlock input);

  private:
    AVAudioConverter();
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace tolvenary
