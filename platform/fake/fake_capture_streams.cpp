#include "platform/fake/fake_capture_streams.h"

#include <cerrno>

namespace tolvenary
{

class FakeCaptureStreams::Stream final : public SCStream
{
  public:
    Stream(FakeCaptureStreams &streams, std::weak_ptr<SCStreamDelegate> delegate)
        : m_streams(streams), m_delegate(std::move(delegate))
    {
        const std::lock_guard guard(m_streams.m_mutex);
        m_streams.m_stream = this;
        ++m_streams.m_alive;
    }
    ~Stream() override
    {
        m_streams.m_calls.note("~SCStream");
        const std::lock_guard guard(m_streams.m_mutex);
        if (m_streams.m_stream == this)
            m_streams.m_stream = nullptr;
        --m_streams.m_alive;
    }

    OSStatus addStreamOutput(std::weak_ptr<SCStreamOutput> output, SCStreamOutputType type) override
    {
        const OSStatus status = m_streams.m_calls.note("addStreamOutput");
        const std::lock_guard guard(m_streams.m_mutex);
        if (status == noErr)
            m_outputs.push_back({std::move(output), type});
        return status;
    }

    void startCaptureWithCompletionHandler(CompletionHandler completionHandler) override
    {
        const OSStatus status = m_streams.m_calls.note("startCapture");
        setRunning(status == noErr);
        m_streams.started.request(
            [handler = std::move(completionHandler), status](bool) { handler(resultOf(status)); });
    }

    void stopCaptureWithCompletionHandler(CompletionHandler completionHandler) override
    {
        const OSStatus status = m_streams.m_calls.note("stopCapture");
        setRunning(false);
        m_streams.stopped.request(
            [handler = std::move(completionHandler), status](bool) { handler(resultOf(status)); });
    }

    // Under the streams' mutex.

    bool isRunning() const { return m_isRunning; }
    int deliver(const CMSampleBuffer &sampleBuffer, SCStreamOutputType type)
    {
        int called = 0;
        for (const Output &output : m_outputs) {
            const auto target = output.type == type ? output.target.lock() : nullptr;
            if (target == nullptr)
                continue;
            target->streamDidOutputSampleBufferOfType(*this, sampleBuffer, type);
            ++called;
        }
        return called;
    }
    void stopWithError(const Error &error)
    {
        m_isRunning = false;
        if (const auto delegate = m_delegate.lock())
            delegate->streamDidStopWithError(*this, error);
    }

  private:
    struct Output {
        std::weak_ptr<SCStreamOutput> target;
        SCStreamOutputType type;
    };

    static Result<void> resultOf(OSStatus status)
    {
        if (status != noErr)
            return failure(status, "The fake stream fails.");
        return {};
    }
    void setRunning(bool running)
    {
        const std::lock_guard guard(m_streams.m_mutex);
        m_isRunning = running;
    }

    FakeCaptureStreams &m_streams;
    std::weak_ptr<SCStreamDelegate> m_delegate;
    std::vector<Output> m_outputs;
    bool m_isRunning = false;
};

std::unique_ptr<SCStream> FakeCaptureStreams::makeStream(const SCContentFilter &filter,
                                                         std::weak_ptr<SCStreamDelegate> delegate)
{
    m_filters.push_back(filter);
    return std::make_unique<Stream>(*this, std::move(delegate));
}

int FakeCaptureStreams::deliver(const CMSampleBuffer &sampleBuffer, SCStreamOutputType type)
{
    const std::lock_guard guard(m_mutex);
    return m_stream != nullptr && m_stream->isRunning() ? m_stream->deliver(sampleBuffer, type) : 0;
}

bool FakeCaptureStreams::stopWithError(const Error &error)
{
    const std::lock_guard guard(m_mutex);
    if (m_stream == nullptr || !m_stream->isRunning())
        return false;
    m_stream->stopWithError(error);
    return true;
}

bool FakeCaptureStreams::isRunning() const
{
    const std::lock_guard guard(m_mutex);
    return m_stream != nullptr && m_stream->isRunning();
}

} // namespace tolvenary
