#include "capture/process_audio_tap.h"
#include "fuzz/hostile_format.h"
#include "fuzz/require.h"
#include "platform/fake/fake_platform.h"

#include <memory>

using namespace tolvenary;
using tolvenary::fuzz::require;

namespace
{

constexpr std::size_t slotBytes = 65536;
constexpr std::uint32_t slots = 4;

/// One cycle's buffers as no device should deliver them. The samples lie in blocks of exactly the stated size, so that
/// reading past it is noticed.
class HostileBuffers
{
  public:
    explicit HostileBuffers(FuzzedDataProvider &input)
    {
        const std::size_t count = input.ConsumeIntegralInRange(0U, 9U);
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint32_t bytes = input.ConsumeIntegralInRange(0U, 9000U);
            auto samples = std::make_unique<std::byte[]>(bytes);
            const auto filling = input.ConsumeIntegral<std::uint8_t>();
            std::fill_n(samples.get(), bytes, std::byte{filling});
            void *const shown = input.ConsumeIntegralInRange(0, 7) > 0 ? samples.get() : nullptr;
            // Nobody may read what has no address, so its size may be anything.
            const std::uint32_t told = shown != nullptr ? bytes : input.ConsumeIntegral<std::uint32_t>();
            m_buffers.push_back({input.ConsumeIntegral<std::uint32_t>(), told, shown});
            m_samples.push_back(std::move(samples));
        }
    }

    ConstAudioBufferList list() const { return m_buffers; }

  private:
    std::vector<std::unique_ptr<std::byte[]>> m_samples;
    std::vector<AudioBuffer> m_buffers;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    const auto mixFormat = AVAudioFormat::standardFormat(48000, 2);
    AVAudioPCMBufferPool pool(slots, slotBytes);
    FakePlatform platform;
    platform.objects().aggregateFormat = fuzz::hostileDescription(input);
    const auto tap = ProcessAudioTap::create(platform, pool, {}, *mixFormat, [&](AVAudioPCMBufferPtr buffer) {
        require(buffer != nullptr && buffer->format() == *mixFormat);
        require(buffer->frameLength() <= buffer->frameCapacity());
        for (std::uint32_t i = 0; i < buffer->frameLength(); ++i) {
            const volatile float left = buffer->floatChannel(0)[i];
            const volatile float right = buffer->floatChannel(1)[i];
            static_cast<void>(left + right);
        }
    });
    require(tap.has_value());
    require((*tap)->start().has_value());
    while (input.remaining_bytes() > 0)
        platform.ioProcs().cycle(HostileBuffers(input).list());
    require(pool.freeSlots() == slots);
    return 0;
}
