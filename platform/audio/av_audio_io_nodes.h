#pragma once

#include "platform/audio/av_audio_converter.h"
#include "platform/audio/av_audio_node.h"
#include "platform/audio/av_audio_pcm_buffer_pool.h"
#include "platform/audio/tap_slot.h"
#include "platform/audio_units.h"

#include <functional>
#include <memory>

namespace tolvenary
{

class AVAudioSinkNode;

/// The end of an engine's graph: renders what it is connected to into a device, at the device's rate.
class AVAudioOutputNode final : public AVAudioNode
{
  public:
    /// The unit that binds the node to a device; null where the system has none.
    AudioOutputUnit *audioUnit() const;

    void render(PlanarBlock output) override;

  private:
    friend class AVAudioEngine;

    explicit AVAudioOutputNode(std::unique_ptr<AudioOutputUnit> unit) : m_unit(std::move(unit)) {}

    void setInput(std::uint32_t bus, AVAudioNode *source) override;
    /// The format in which the source renders.
    void setInputFormat(const AVAudioFormat &format) { m_inputFormat = format; }
    bool rateIsConverted() const;
    /// Frames asked of the source at once, at most; 0 while nothing is converted.
    std::uint32_t longestPull() const { return m_pulled != nullptr ? m_pulled->frameCapacity() : 0; }

    void prepare(std::uint32_t maxFrames, bool rateIsConverted) override;
    OSStatus start();
    void stop();

    const AVAudioPCMBuffer *pull(std::uint32_t frames);

    AVAudioNode *m_source = nullptr;
    std::optional<AVAudioFormat> m_inputFormat;

    // Only where the rate is converted.
    std::unique_ptr<AVAudioConverter> m_converter;
    std::unique_ptr<AVAudioPCMBuffer> m_outputView;
    std::unique_ptr<AVAudioPCMBufferPool> m_pullPool;
    AVAudioPCMBufferPtr m_pulled;

    std::unique_ptr<AudioOutputUnit> m_unit; // destroyed first: its callback uses the rest
};

/// Called on the capturing thread with each block, in the format that the tap was installed with. real-time
using AVAudioNodeTapBlock = TapSlot::Block;

/// The beginning of an engine's graph: the default input.
class AVAudioInputNode final : public AVAudioNode
{
  public:
    /// What the input delivers on bus 0; empty while there is none.
    std::optional<AVAudioFormat> inputFormatForBus(std::uint32_t bus) const;

    /// One tap on the bus, replacing an earlier one. `bufferSize` is only a wish: blocks come as the cycles do, because
    /// gathering them would add delay. Thread: main, while the engine is stopped.
    void installTapOnBus(std::uint32_t bus, std::uint32_t bufferSize, const AVAudioFormat &format,
                         AVAudioNodeTapBlock block);
    /// When this has returned, the block is not running and will not be called again. Thread: main.
    void removeTapOnBus(std::uint32_t bus);

  private:
    friend class AVAudioEngine;

    explicit AVAudioInputNode(std::unique_ptr<AudioInputUnit> unit) : m_unit(std::move(unit)) {}

    /// Receives each block as well, after the tap.
    void setSink(AVAudioSinkNode &sink) { m_sink = &sink; }
    OSStatus start();
    void stop();
    void capture(const AudioTimeStamp &when, ConstPlanarBlock input); // real-time

    TapSlot m_tap;
    AVAudioSinkNode *m_sink = nullptr;
    std::unique_ptr<AudioInputUnit> m_unit; // destroyed first: its callback uses the rest
};

} // namespace tolvenary
