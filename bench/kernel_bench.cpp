// What happens in a cycle, each piece beside the least that it could cost or the best-known other way to do it.

#include "bench/duel.h"
#include "bench/traffic.h"
#include "capture/process_audio_tap.h"
#include "platform/audio/av_audio_engine.h"
#include "platform/audio/av_audio_mixer_node.h"
#include "platform/audio/av_audio_player_node.h"
#include "platform/audio/mix_loops.h"
#include "platform/fake/fake_platform.h"
#include "tests/session/forwarding_platform.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <readerwriterqueue/readerwriterqueue.h>
#include <stdexcept>

namespace
{

using namespace tolvenary;
using bench::Duels;
using bench::Traffic;

constexpr std::array<std::uint32_t, 5> sizes{64, 128, 256, 512, 1024};
constexpr std::size_t longest = 1024;

/// Stereo samples, aligned as the pool's and the server's are.
struct alignas(64) Stereo {
    std::array<std::array<float, longest>, 2> channels{};

    std::array<float *, 2> pointers() { return {channels[0].data(), channels[1].data()}; }
};

std::string framesOf(std::uint32_t frames)
{
    return ", " + std::to_string(frames) + " frames";
}

AVAudioFormat mixFormat()
{
    return AVAudioFormat::standardFormat(48000, 2).value();
}

// ---- the loops

/// Two stereo sources, each along a gain that moves, then their sum.
void mix(const MixLoops &loops, Stereo &a, Stereo &b, std::uint32_t frames)
{
    for (std::size_t c = 0; c < 2; ++c) {
        loops.scaleAlong(a.channels[c].data(), frames, {1, 1.0001F, frames}, 0);
        loops.scaleAlong(b.channels[c].data(), frames, {1, 0.9999F, frames}, 0);
        loops.add(a.channels[c].data(), b.channels[c].data(), frames);
    }
}

void onlyTraffic(const Traffic &traffic, Stereo &a, Stereo &b, std::uint32_t frames)
{
    for (std::size_t c = 0; c < 2; ++c) {
        traffic.oneToOne(a.channels[c].data(), a.channels[c].data(), frames);
        traffic.oneToOne(b.channels[c].data(), b.channels[c].data(), frames);
        traffic.twoToOne(a.channels[c].data(), a.channels[c].data(), b.channels[c].data(), frames);
    }
}

void benchLoops(Duels &duels, const char *kind, const MixLoops &loops, const Traffic &traffic, double aim)
{
    for (const std::uint32_t frames : sizes) {
        Stereo a; // silence: what is scaled again and again must not grow
        Stereo b;
        duels.fight(
            {.part = "Mixing",
             .work = std::string("two gains and the sum, ") + kind + framesOf(frames),
             .beside = "load and store",
             .mostRatio = aim},
            [&] { mix(loops, a, b, frames); }, [&] { onlyTraffic(traffic, a, b, frames); });
    }
}

// ---- the whole graph of nodes

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
    AVAudioPCMBufferPool m_pool{4, longest * 8};
    AVAudioPlayerNode m_microphone;
    AVAudioPlayerNode m_application;
    AVAudioMixerNode m_microphoneMixer;
    AVAudioMixerNode m_applicationMixer;
    AVAudioMixerNode m_sum;
    AVAudioEngine m_engine;
};

void benchGraph(Duels &duels)
{
    const Traffic &traffic = wideMixLoops() != nullptr ? *bench::wideTraffic() : bench::plainTraffic();
    for (const std::uint32_t frames : sizes) {
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

// ---- the tap

/// Keeps the block that it is given, so that it can be called with nothing in between.
class KeptBlock final : public IOProcs
{
  public:
    OSStatus AudioDeviceCreateIOProcIDWithBlock(AudioDeviceIOProcID &outIOProcID, AudioObjectID,
                                                AudioDeviceIOBlock created) override
    {
        block = std::move(created);
        outIOProcID = AudioDeviceIOProcID{1};
        return noErr;
    }
    OSStatus AudioDeviceDestroyIOProcID(AudioObjectID, AudioDeviceIOProcID) override { return noErr; }
    OSStatus AudioDeviceStart(AudioObjectID, AudioDeviceIOProcID) override { return noErr; }
    OSStatus AudioDeviceStop(AudioObjectID, AudioDeviceIOProcID) override { return noErr; }

    AudioDeviceIOBlock block;
};

class KeepingPlatform final : public session::ForwardingPlatform
{
  public:
    using ForwardingPlatform::ForwardingPlatform;
    KeptBlock &ioProcs() override { return m_ioProcs; }

  private:
    KeptBlock m_ioProcs;
};

void benchTap(Duels &duels)
{
    FakePlatform fake;
    KeepingPlatform platform(fake);
    AVAudioPCMBufferPool pool(8, longest * 8);
    const auto tap = ProcessAudioTap::create(platform, pool, {}, mixFormat(), [](AVAudioPCMBufferPtr buffer) {
        benchmark::DoNotOptimize(buffer->floatChannel(0));
    });
    if (!tap || (*tap)->hasConverter())
        throw std::runtime_error("no tap, or one that converts");
    Stereo source;
    Stereo target;
    for (const std::uint32_t frames : {64U, 256U, 1024U}) {
        const auto bytes = static_cast<std::uint32_t>(frames * sizeof(float));
        const std::array input{AudioBuffer{1, bytes, source.channels[0].data()},
                               AudioBuffer{1, bytes, source.channels[1].data()}};
        duels.fight(
            {.part = "Tap", .work = "a cycle into a buffer" + framesOf(frames), .beside = "memcpy", .mostRatio = 1.5},
            [&] { platform.ioProcs().block({}, input, {}, {}, {}); },
            [&] {
                for (std::size_t c = 0; c < 2; ++c)
                    std::memcpy(target.channels[c].data(), source.channels[c].data(), bytes);
            });
    }
}

// ---- the queue

void benchQueue(Duels &duels)
{
    AVAudioPCMBufferPool pool(4, longest * 8);
    SpscRing<ScheduledBuffer> ring(256);
    moodycamel::ReaderWriterQueue<ScheduledBuffer> other(256);
    ring.writer().push({pool.make(mixFormat(), 64), {}});
    other.try_enqueue({pool.make(mixFormat(), 64), {}});
    duels.fight(
        {.part = "Queue",
         .work = "pull a buffer and schedule one",
         .beside = "moodycamel readerwriterqueue",
         .mostRatio = 1.0},
        [&] {
            ScheduledBuffer pulled = ring.reader().pop();
            ring.writer().push(std::move(pulled));
        },
        [&] {
            ScheduledBuffer pulled;
            other.try_dequeue(pulled);
            other.try_enqueue(std::move(pulled));
        });
    if (pool.freeSlots() != 2 || ring.reader().size() != 1 || other.size_approx() != 1)
        throw std::runtime_error("a buffer got lost in a queue");
}

} // namespace

int main()
{
    try {
        Duels duels;
        benchLoops(duels, "plain", plainMixLoops(), bench::plainTraffic(), 1.9);
        if (wideMixLoops() != nullptr)
            benchLoops(duels, "AVX2", *wideMixLoops(), *bench::wideTraffic(), 1.4);
        else
            bench::progress("this processor has no AVX2");
        benchGraph(duels);
        benchTap(duels);
        benchQueue(duels);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
