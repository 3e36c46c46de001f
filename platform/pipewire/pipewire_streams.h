#pragma once

#include "platform/capture_stream.h"
#include "platform/pipewire/graph_session.h"

namespace tolvenary
{

class PipeWireStreams final : public SCStreams
{
  public:
    explicit PipeWireStreams(GraphSession &session) : m_session(session) {}

    std::unique_ptr<SCStream> makeStream(const SCContentFilter &filter,
                                         std::weak_ptr<SCStreamDelegate> delegate) override;

  private:
    GraphSession &m_session;
};

} // namespace tolvenary
