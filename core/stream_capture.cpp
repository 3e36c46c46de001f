#include "core/answer.h"
#include "core/mix_coordinator.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace tolvenary
{

std::shared_ptr<AppStreamOutput> MixCoordinator::makeStreamOutput()
{
    return std::make_shared<AppStreamOutput>(pool(), m_mixFormat, appBufferCallback());
}

void MixCoordinator::setStream(std::unique_ptr<SCStream> stream, std::shared_ptr<AppStreamOutput> streamOutput,
                               std::shared_ptr<StreamErrorDelegate> streamDelegate,
                               std::shared_ptr<ScreenSinkOutput> screenSink)
{
    releaseStream();
    m_stream = std::move(stream);
    m_streamOutput = std::move(streamOutput);
    m_streamDelegate = std::move(streamDelegate);
    m_screenSink = std::move(screenSink);
}

/// The stream is asked to stop in a task that nobody waits for. It has lost its output and delivers to nobody, but is
/// kept until it has stopped, because what it may still be delivering comes from our pool.
void MixCoordinator::releaseStream()
{
    if (m_stream != nullptr) {
        SCStream *const stream = m_stoppingStreams.emplace_back(std::move(m_stream)).get();
        QMetaObject::invokeMethod(
            this, [this, stream] { stopStream(stream); }, Qt::QueuedConnection);
    }
    m_streamOutput.reset();
    m_streamDelegate.reset();
    m_screenSink.reset();
}

/// Whether the stop succeeds does not matter any more.
QCoro::Task<void> MixCoordinator::stopStream(SCStream *stream)
{
    const QPointer<MixCoordinator> self(this);
    co_await answer<Result<void>>(
        [stream](auto handler) { stream->stopCaptureWithCompletionHandler(std::move(handler)); });
    if (self)
        std::erase_if(m_stoppingStreams, [stream](const auto &stopping) { return stopping.get() == stream; });
}

} // namespace tolvenary
