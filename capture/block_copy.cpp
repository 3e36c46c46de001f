#include "capture/block_copy.h"

#include <algorithm>
#include <cstring>

namespace tolvenary
{

namespace
{

void fill(const AudioBuffer &target, const AudioBuffer *source)
{
    if (target.mData == nullptr)
        return;
    const bool readable = source != nullptr && source->mData != nullptr;
    const std::uint32_t bytes = readable ? std::min(source->mDataByteSize, target.mDataByteSize) : 0;
    if (bytes > 0)
        std::memcpy(target.mData, source->mData, bytes);
    if (bytes < target.mDataByteSize)
        std::memset(static_cast<std::byte *>(target.mData) + bytes, 0, target.mDataByteSize - bytes);
}

} // namespace

void copyBuffers(ConstAudioBufferList source, AVAudioPCMBuffer &target)
{
    const AudioBufferList targets = target.mutableAudioBufferList();
    for (std::size_t i = 0; i < targets.size(); ++i)
        fill(targets[i], i < source.size() ? &source[i] : nullptr);
}

} // namespace tolvenary
