#include "capture/block_conversion.h"

#include <cmath>
#include <cstdlib>

namespace tolvenary
{

namespace
{

constexpr double marginFrames = 32;
constexpr double countsEnd = 4294967296.0;

} // namespace

std::uint32_t convertedCapacity(double targetRate, double sourceRate, std::uint32_t frames)
{
    const double capacity = targetRate / sourceRate * frames + marginFrames;
    if (!std::isfinite(capacity) || capacity <= -1 || capacity >= countsEnd)
        std::abort();
    return static_cast<std::uint32_t>(capacity);
}

AVAudioPCMBufferPtr convertBlock(AVAudioConverter &converter, AVAudioPCMBufferPool &pool, const AVAudioPCMBuffer &block)
{
    const AVAudioFormat &target = converter.outputFormat();
    AVAudioPCMBufferPtr output =
        pool.make(target, convertedCapacity(target.sampleRate(), block.format().sampleRate(), block.frameLength()));
    if (output == nullptr)
        return nullptr;
    bool isSupplied = false;
    // Never the end of the stream: the converter keeps its history for the next block.
    const auto supplyOnce = [&](std::uint32_t, AVAudioConverterInputStatus &status) -> const AVAudioPCMBuffer * {
        status = isSupplied ? AVAudioConverterInputStatus::noDataNow : AVAudioConverterInputStatus::haveData;
        const AVAudioPCMBuffer *next = isSupplied ? nullptr : &block;
        isSupplied = true;
        return next;
    };
    if (converter.convertToBuffer(*output, nullptr, supplyOnce) == AVAudioConverterOutputStatus::error)
        return nullptr;
    return output;
}

} // namespace tolvenary
