#include "capture/block_conversion.h"
#include "core/mix_coordinator.h"
#include "platform/audio/av_audio_sink_node.h"

namespace tolvenary
{

namespace
{

constexpr int noMicrophone = 12;
constexpr std::uint32_t tapBufferFrames = 1024;

} // namespace

Result<void> MixCoordinator::setupCaptureEngine()
{
    AVAudioInputNode &input = m_captureEngine.inputNode();
    const std::optional<AVAudioFormat> format = input.inputFormatForBus(0);
    if (!format) {
        return tl::unexpected(Error{"Tolvenary", noMicrophone,
                                    "No microphone input available. Set the system default input to your mic."});
    }
    // Shared only because the block must be copyable. Without a converter every block is dropped.
    const std::shared_ptr<AVAudioConverter> converter = AVAudioConverter::make(*format, m_mixFormat);
    const std::weak_ptr<MixFeed> weakFeed = m_feed;
    const auto deliver = [weakFeed, converter, &pool = m_bufferPool](const AVAudioPCMBuffer &block,
                                                                     const AudioTimeStamp &) {
        const std::shared_ptr<MixFeed> feed = weakFeed.lock();
        if (feed == nullptr || converter == nullptr)
            return;
        if (AVAudioPCMBufferPtr converted = convertBlock(*converter, pool, block))
            feed->deliverMicrophone(std::move(converted));
    };
    input.installTapOnBus(0, tapBufferFrames, *format, deliver);

    const auto sink = std::make_shared<AVAudioSinkNode>(
        [](const AudioTimeStamp &, std::uint32_t, ConstPlanarBlock) { return noErr; });
    m_captureEngine.attachNode(sink);
    m_captureEngine.connect(input, *sink, *format);
    return m_captureEngine.startAndReturnError();
}

} // namespace tolvenary
