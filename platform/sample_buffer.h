#pragma once

#include "platform/audio_types.h"
#include "platform/os_status.h"

#include <memory>
#include <optional>

namespace tolvenary
{

/// Counts samples.
using CMItemCount = std::int64_t;

/// What the samples lie in; they stay as they are while somebody keeps it.
using CMBlockBuffer = std::shared_ptr<const void>;

/// What the samples of a buffer are.
struct CMFormatDescription {
    /// None where they are not sound.
    std::optional<AudioStreamBasicDescription> streamBasicDescription;
};

/// The buffers of the list begin at addresses that are multiples of 16.
inline constexpr std::uint32_t kCMSampleBufferFlag_AudioBufferList_Assure16ByteAlignment = 1U << 0;

/// A piece of what a stream captured. Borrowed for a call; who wants its samples for longer keeps the block that they
/// lie in. Thread: any, one at a time.
class CMSampleBuffer
{
  public:
    virtual ~CMSampleBuffer() = default;

    virtual bool CMSampleBufferIsValid() const = 0;

    /// Null where it has none.
    virtual const CMFormatDescription *CMSampleBufferGetFormatDescription() const = 0;

    virtual CMItemCount CMSampleBufferGetNumSamples() const = 0;

    /// Writes the list of the samples' buffers (see audio_buffer_list.h) into `outBufferList`, and has the caller keep
    /// the block that they lie in. `outSizeNeeded`, if given, is set also on failure; the rest is then left alone.
    virtual OSStatus CMSampleBufferGetAudioBufferListWithRetainedBlockBuffer(std::size_t *outSizeNeeded,
                                                                             std::span<std::byte> outBufferList,
                                                                             std::uint32_t flags,
                                                                             CMBlockBuffer &outBlockBuffer) const = 0;
};

} // namespace tolvenary
