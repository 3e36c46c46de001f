#include "bench/kernels.h"
#include "bench/traffic.h"
#include "platform/audio/av_audio_engine.h"
#include "platform/audio/av_audio_mixer_node.h"
#include "platform/audio/av_audio_player_node.h"
#include "platform/audio/mix_loops.h"
#include "platform/fake/fake_platform.h"

namespace tolvenary::bench
{

namespace
{

/// Both players through their mixers into an output unit, as the program builds it.
class Graph
{
  public:
    Graph() : m_engine(m_platform.audioUnits())
    {
        m_engine.attachNode(m_microphone);
        m_engine.attachNode(m_application);
        m_engine.attachNode(m_microphoneMixer);
        m_engine.attachNode(m_applicationMixer);
        m_engine.attachNode(m_sum);
        m_engine.connect(m_microphone, m_microphoneMixer, mixFormat());
        m_engine.connect(m_application, m_applicationMixer, mixFormat());
        m_engine.connect(m_microphoneMixer, m_sum, 0, 0, mixFormat());
        m_engine.connect(m_applicationMixer, m_sum, 0, 1, mixFormat());
        m_engine.connect(m_sum, m_engine.outputNode(), mixFormat());
        m_microphoneMixer.setOutputVolume(0.8F);
        m_applicationMixer.setOutputVolume(0.5F);
        m_engine.prepare();
        m_microphone.play();
        m_application.play();
    }

    void cycle(std::span<float *const> output, std::uint32_t frames)
    {
        schedule(m_microphone, frames);
        schedule(m_application, frames);
        m_sum.render({output, frames});
    }

  private:
    void schedule(AVAudioPlayerNode &player, std::uint32_t frames)
    {
        auto buffer = m_pool.make(m_format, frames);
        buffer->setFrameLength(frames);
        player.scheduleBuffer(std::move(buffer), {});
    }

    AVAudioFormat m_format = mixFormat();
    FakePlatform m_platform;
    AVAudioPCMBufferPool m_pool{4, longestCycle * 8};
    AVAudioPlayerNode m_microphone;
    AVAudioPlayerNode m_application;
    AVAudioMixerNode m_microphoneMixer;
    AVAudioMixerNode m_applicationMixer;
    AVAudioMixerNode m_sum;
    AVAudioEngine m_engine;
};

} // namespace

void benchGraph(Duels &duels)
{
    const Traffic &traffic = wideMixLoops() != nullptr ? *wideTraffic() : plainTraffic();
    for (const std::uint32_t frames : cycleSizes) {
        Graph graph;
        Stereo output;
        Stereo a;
        Stereo b;
        const std::array<float *, 2> channels = output.pointers();
        duels.fight(
            {.part = "Mixing",
             .work = "buffers, queues, nodes and mix" + framesOf(frames),
             .beside = "load two, store one"},
            [&] { graph.cycle(channels, frames); },
            [&] {
                for (std::size_t c = 0; c < 2; ++c)
                    traffic.twoToOne(channels[c], a.channels[c].data(), b.channels[c].data(), frames);
            });
    }
}

} // namespace tolvenary::bench
