#pragma once

#include "platform/capture_stream.h"
#include "platform/fake/fake_answer.h"
#include "platform/fake/fake_calls.h"

#include <mutex>
#include <vector>

namespace tolvenary
{

/// Makes streams that deliver when they are told to. One can be driven at a time: the one made last. Samples may be
/// delivered on another thread than main: stopping or destroying a stream waits for the delivery's end.
class FakeCaptureStreams final : public SCStreams
{
  public:
    explicit FakeCaptureStreams(FakeCalls &calls) : m_calls(calls) {}

    std::unique_ptr<SCStream> makeStream(const SCContentFilter &filter,
                                         std::weak_ptr<SCStreamDelegate> delegate) override;

    /// Hands the samples to all outputs of that type and returns how many there were; none while no stream runs.
    /// Thread: any.
    int deliver(const CMSampleBuffer &sampleBuffer, SCStreamOutputType type);
    /// The stream ends by itself. False when none runs.
    bool stopWithError(const Error &error);

    /// When the calls of a stream answer.
    FakeAnswer<bool> started{true};
    FakeAnswer<bool> stopped{true};

    bool isRunning() const;
    int alive() const { return m_alive; }
    /// Of every stream asked for, in order.
    const std::vector<SCContentFilter> &filters() const { return m_filters; }

  private:
    class Stream;

    FakeCalls &m_calls;
    int m_alive = 0;
    std::vector<SCContentFilter> m_filters;

    mutable std::mutex m_mutex; // over what follows, and over a delivery from its beginning to its end
    Stream *m_stream = nullptr;
};

} // namespace tolvenary
