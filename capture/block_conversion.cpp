#include "capture/block_conversion.h"

#include <cstdlib>
#include <limits>

namespace tolvenary
{

namespace
{

constexpr double capacityMargin = 32.0;

} // namespace

const AVAudioPCMBuffer *OneShotInput::operator()(std::uint32_t, AVAudioConverterInputStatus &outStatus)
{
    if (m_supplied) {
        outStatus = AVAudioConverterInputStatus::noDataNow;
        return nullptr;
    }
    m_supplied = true;
    outStatus = AVAudioConverterInputStatus::haveData;
    return &m_block;
}

std::uint32_t outputCapacity(double targetRate, double sourceRate, std::uint32_t frames)
{
    constexpr double firstTooLarge = double{std::numeric_limits<std::uint32_t>::max()} + 1.0;
    const double capacity = targetRate / sourceRate * frames + capacityMargin;
    if (!(capacity > -1.0 && capacity < firstTooLarge))
        std::abort();
    return static_cast<std::uint32_t>(capacity);
}

AVAudioPCMBufferPtr convertBlock(AVAudioConverter *converter, AVAudioPCMBufferPool &pool, const AVAudioPCMBuffer &block,
                                 const AVAudioFormat &target)
{
    const std::uint32_t capacity =
        outputCapacity(target.sampleRate(), block.format().sampleRate(), block.frameLength());
    AVAudioPCMBufferPtr output = pool.make(target, capacity);
    if (output == nullptr || converter == nullptr)
        return nullptr;
    OneShotInput input(block);
    // Without a place for an error's text the converter does not allocate one; its status says enough.
    if (converter->convertToBuffer(*output, nullptr, input) == AVAudioConverterOutputStatus::error)
        return nullptr;
    return output;
}

} // namespace tolvenary
