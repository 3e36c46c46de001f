#include "fuzz/hostile_format.h"
#include "fuzz/require.h"
#include "platform/audio/av_audio_converter.h"
#include "platform/audio/av_audio_pcm_buffer_pool.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

using namespace tolvenary;
using tolvenary::fuzz::require;

namespace
{

constexpr std::size_t slotBytes = 1 << 20;

/// A block of any length and any samples, including infinities and NaNs.
AVAudioPCMBufferPtr hostileBlock(FuzzedDataProvider &input, AVAudioPCMBufferPool &pool, const AVAudioFormat &format)
{
    auto block = pool.make(format, input.ConsumeIntegralInRange(0U, 1200U));
    if (block == nullptr)
        return nullptr;
    block->setFrameLength(block->frameCapacity());
    const auto pattern = input.ConsumeBytes<std::uint8_t>(16);
    for (const AudioBuffer &buffer : block->mutableAudioBufferList()) {
        auto *const bytes = static_cast<std::uint8_t *>(buffer.mData);
        for (std::uint32_t i = 0; i < buffer.mDataByteSize; ++i)
            bytes[i] = pattern.empty() ? std::uint8_t{0} : pattern[i % pattern.size()];
    }
    return block;
}

/// Converts block after block, now and then into too small an output, and counts what comes out.
void run(FuzzedDataProvider &input, AVAudioConverter &converter)
{
    AVAudioPCMBufferPool pool(2, slotBytes);
    const double ratio = converter.outputFormat().sampleRate() / converter.inputFormat().sampleRate();
    double due = 0;
    for (int cycle = 0; cycle < 16 && input.remaining_bytes() > 0; ++cycle) {
        const auto block = hostileBlock(input, pool, converter.inputFormat());
        const auto output = pool.make(converter.outputFormat(), input.ConsumeIntegralInRange(0U, 4000U));
        if (block == nullptr || output == nullptr)
            return;
        const AVAudioPCMBuffer *next = input.ConsumeIntegralInRange(0, 7) > 0 ? block.get() : nullptr;
        const AVAudioPCMBuffer *const offered = next;
        const auto status =
            converter.convertToBuffer(*output, nullptr, [&](std::uint32_t, AVAudioConverterInputStatus &inputStatus) {
                inputStatus =
                    next != nullptr ? AVAudioConverterInputStatus::haveData : AVAudioConverterInputStatus::noDataNow;
                return std::exchange(next, nullptr);
            });
        const bool taken = offered != nullptr && next == nullptr;
        due += taken ? block->frameLength() * ratio : 0;
        due -= output->frameLength();
        require(output->frameLength() <= output->frameCapacity());
        require(status == AVAudioConverterOutputStatus::inputRanDry ||
                status == AVAudioConverterOutputStatus::haveData);
        require(status != AVAudioConverterOutputStatus::haveData || output->frameLength() == output->frameCapacity());
        require(due > -2 - ratio);
        require(status == AVAudioConverterOutputStatus::haveData || due < 2 + ratio);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    const auto from = AVAudioFormat::fromStreamDescription(fuzz::hostileDescription(input));
    const auto to = AVAudioFormat::fromStreamDescription(fuzz::hostileDescription(input));
    if (!from || !to)
        return 0;
    const auto converter = AVAudioConverter::make(*from, *to, input.ConsumeIntegralInRange(0U, 600U));
    if (converter == nullptr)
        return 0;
    require(converter->inputFormat() == *from && converter->outputFormat() == *to);
    run(input, *converter);
    return 0;
}
