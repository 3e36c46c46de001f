#include "capture/buffer_copy.h"

#include <algorithm>
#include <cstring>

namespace tolvenary
{

void copyCommonBuffers(ConstAudioBufferList source, AudioBufferList destination)
{
    const std::size_t count = std::min(source.size(), destination.size());
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t bytes = std::min(source[i].mDataByteSize, destination[i].mDataByteSize);
        if (source[i].mData != nullptr && destination[i].mData != nullptr && bytes > 0)
            std::memcpy(destination[i].mData, source[i].mData, bytes);
    }
}

} // namespace tolvenary
