#include "bench/kernels.h"
#include "capture/process_audio_tap.h"
#include "platform/fake/fake_platform.h"
#include "tests/session/forwarding_platform.h"

#include <cstring>
#include <stdexcept>

namespace tolvenary::bench
{

namespace
{

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

} // namespace

void benchTap(Duels &duels)
{
    FakePlatform fake;
    KeepingPlatform platform(fake);
    AVAudioPCMBufferPool pool(8, longestCycle * 8);
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

} // namespace tolvenary::bench
