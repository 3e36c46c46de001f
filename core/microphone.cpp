#include "capture/block_conversion.h"
#include "core/mix_coordinator.h"
#include "core/tolvenary_error.h"
#include "platform/audio/av_audio_sink_node.h"
#include "platform/audio_server.h"
#include "platform/platform.h"

#include <cerrno>

namespace tolvenary
{

namespace
{

constexpr std::uint32_t tapFrames = 1024;

/// Brings each block of the microphone into the mix format and hands it to the feed. What cannot be converted is
/// dropped; the meter shows a microphone that stays silent.
struct MicrophoneTap {
    std::weak_ptr<MixFeed> feed;
    AVAudioPCMBufferPool *pool;
    AVAudioFormat mixFormat;
    std::shared_ptr<AVAudioConverter> converter; ///< none where the platform cannot convert the format

    void operator()(const AVAudioPCMBuffer &block, const AudioTimeStamp &) const // real-time
    {
        const auto target = feed.lock();
        if (target == nullptr)
            return;
        AVAudioPCMBufferPtr converted = convertBlock(converter.get(), *pool, block, mixFormat);
        if (converted != nullptr)
            target->feedMic(std::move(converted));
    }
};

} // namespace

Result<void> MixCoordinator::setupCaptureEngine()
{
    AVAudioInputNode &input = m_captureEngine.inputNode();
    const std::optional<AVAudioFormat> format = input.inputFormatForBus(0);
    // With the server all microphones are gone, and no setting of the user's is to blame.
    if (!format && m_platform.audioServer().state() == AudioServerState::gone)
        return failure(-ENOTCONN, "The sound server went away (OSStatus " + std::to_string(-ENOTCONN) + ").");
    if (!format)
        return tolvenaryFailure(noMicrophoneInput,
                                "No microphone input available. Set the system default input to your mic.");

    input.installTapOnBus(0, tapFrames, *format,
                          MicrophoneTap{m_feed, &pool(), m_mixFormat, AVAudioConverter::make(*format, m_mixFormat)});

    // An input runs only while something takes what it delivers; the tap does the work.
    AVAudioNode &sink = m_captureEngine.attachNode(std::make_shared<AVAudioSinkNode>(
        [](const AudioTimeStamp &, std::uint32_t, ConstPlanarBlock) { return noErr; }));
    m_captureEngine.connect(input, sink, *format);
    return m_captureEngine.startAndReturnError();
}

} // namespace tolvenary
