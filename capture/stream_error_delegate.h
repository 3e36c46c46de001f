#pragma once

#include "platform/capture_stream.h"

#include <utility>

namespace tolvenary
{

/// Passes on why a stream ended by itself. Thread: the stream's queue.
class StreamErrorDelegate final : public SCStreamDelegate
{
  public:
    using OnError = std::function<void(const Error &error)>;

    explicit StreamErrorDelegate(OnError onError) : m_onError(std::move(onError)) {}

    void streamDidStopWithError(SCStream &, const Error &error) override { m_onError(error); }

  private:
    const OnError m_onError;
};

} // namespace tolvenary
