#include "platform/pipewire/pipewire_streams.h"

#include "platform/pipewire/pipewire_stream.h"

namespace tolvenary
{

std::unique_ptr<SCStream> PipeWireStreams::makeStream(const SCContentFilter &filter,
                                                      std::weak_ptr<SCStreamDelegate> delegate)
{
    return std::make_unique<PipeWireStream>(m_session, filter, std::move(delegate));
}

} // namespace tolvenary
