#pragma once

#include "platform/audio/av_audio_node.h"

#include <array>
#include <atomic>
#include <vector>

namespace tolvenary
{

struct GainRamp;

/// Adds up its inputs and scales the sum. A new volume is reached over the next block, in a straight line, so that a
/// moving slider makes no click. Stereo; silent until prepared.
class AVAudioMixerNode final : public AVAudioNode
{
  public:
    /// Linear factor, 1 unchanged; not clamped. Thread: any.
    void setOutputVolume(float volume);
    float outputVolume() const;

    void render(PlanarBlock output) override;

  private:
    static constexpr std::size_t scratchChannels = 2;

    void prepare(std::uint32_t maxFrames, bool rateIsConverted) override;
    void setInput(std::uint32_t bus, AVAudioNode *source) override;
    void detached() override;

    void sumInputs(PlanarBlock output);
    void add(AVAudioNode &input, PlanarBlock output);
    static void scale(PlanarBlock output, const GainRamp &ramp, std::uint32_t first);

    std::vector<AVAudioNode *> m_inputs;
    std::array<std::vector<float>, scratchChannels> m_scratch;
    std::atomic<float> m_outputVolume{1.0F};
    std::optional<float> m_reachedVolume; ///< of the last block; none before the first, which needs no ramp
};

} // namespace tolvenary
