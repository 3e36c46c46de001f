#include "platform/pipewire/pipewire_stream.h"

#include "platform/pipewire/pipewire_sample_buffer.h"

#include <algorithm>
#include <cerrno>
#include <unistd.h>
#include <utility>

namespace tolvenary
{

namespace
{

using std::chrono::nanoseconds;

/// The time between two looks for samples, until the first have come.
constexpr nanoseconds longestPause = std::chrono::milliseconds(5);
constexpr nanoseconds shortestPause = std::chrono::microseconds(500);

TapWish wishFor(const SCContentFilter &filter)
{
    TapWish wish;
    wish.onlyProcess = filter.processID;
    if (!filter.processID)
        wish.excludedProcesses.insert(getpid());
    return wish;
}

NodeSpec streamNode(const GraphSession &session)
{
    return {"com.tolvenary.stream", "Tolvenary stream", session.group(), "Capture", StereoFoldDown::ports()};
}

/// A quarter of a cycle: what it brought is handed on well before the next one.
nanoseconds pauseFor(const Cycle &cycle)
{
    const auto length = nanoseconds(std::chrono::seconds(1)) * cycle.frames() / std::max(cycle.when().mRate, 1U);
    return std::clamp(length / 4, shortestPause, longestPause);
}

} // namespace

PipeWireStream::PipeWireStream(GraphSession &session, const SCContentFilter &filter,
                               std::weak_ptr<SCStreamDelegate> delegate)
    : m_session(session), m_wish(wishFor(filter)), m_delegate(std::move(delegate)), m_pause(longestPause)
{
    m_queue.emplace([this] { return look(); });
}

PipeWireStream::~PipeWireStream()
{
    m_queue.reset();
    removeNode();
}

OSStatus PipeWireStream::addStreamOutput(std::weak_ptr<SCStreamOutput> output, SCStreamOutputType type)
{
    if (output.expired())
        return -EINVAL;
    m_queue->async([this, added = Output{std::move(output), type}] { m_outputs.push_back(added); });
    return noErr;
}

void PipeWireStream::startCaptureWithCompletionHandler(CompletionHandler completionHandler)
{
    m_queue->async([this, handler = std::move(completionHandler)] { handler(start()); });
}

void PipeWireStream::stopCaptureWithCompletionHandler(CompletionHandler completionHandler)
{
    m_queue->async([this, handler = std::move(completionHandler)] { handler(stop()); });
}

Result<void> PipeWireStream::start()
{
    if (m_node)
        return failure(-EALREADY, "The stream is already capturing.");
    if (const OSStatus status = makeNode(); status != noErr) {
        removeNode();
        return failure(status, "The sound server does not let the stream capture.");
    }
    m_node->start();
    return {};
}

Result<void> PipeWireStream::stop()
{
    if (!m_node)
        return failure(-EINVAL, "The stream is not capturing.");
    removeNode();
    return {};
}

OSStatus PipeWireStream::makeNode()
{
    // The lock is taken before the node is there, so that nothing that happens to it is missed.
    const Connection::Lock lock(m_session.connection());
    m_ending.store(noErr);
    m_node = std::make_unique<SessionNode>(m_session, streamNode(m_session),
                                           StreamRole{m_wish.onlyProcess, m_wish.excludedProcesses},
                                           [this](const Cycle &cycle) { process(cycle); });
    m_session.addWatcher(*this);
    graphChanged();
    return m_session.waitUntilThere(m_node->node());
}

void PipeWireStream::removeNode()
{
    if (!m_node)
        return;
    {
        const Connection::Lock lock(m_session.connection());
        m_session.removeWatcher(*this);
    }
    m_node.reset();
    m_samples.clear();
}

std::optional<nanoseconds> PipeWireStream::look()
{
    if (!m_node)
        return std::nullopt;
    if (m_ending.load() != noErr) {
        endWithError();
        return std::nullopt;
    }
    // No more than there are now, so that a stop gets its turn even if the outputs are slower than the sound.
    for (std::size_t count = m_samples.size(); count > 0; --count)
        deliver(PipeWireSampleBuffer(m_samples.pop()));
    return m_pause.load();
}

void PipeWireStream::deliver(const CMSampleBuffer &sampleBuffer)
{
    for (const Output &output : m_outputs) {
        // What a node hears has no pictures and no microphone in it.
        const auto target = output.type == SCStreamOutputType::audio ? output.target.lock() : nullptr;
        if (target != nullptr)
            target->streamDidOutputSampleBufferOfType(*this, sampleBuffer, output.type);
    }
}

void PipeWireStream::endWithError()
{
    const OSStatus status = m_ending.load();
    removeNode();
    const char *text = status == -ENOTCONN ? "The sound server went away." : "The sound server ended the capture.";
    if (const auto delegate = m_delegate.lock())
        delegate->streamDidStopWithError(*this, Error{NSOSStatusErrorDomain, status, text});
}

/// The server has converted all streams to its own rate and sample type; of their formats only the question remains
/// whether there is more than one channel.
void PipeWireStream::graphChanged()
{
    if (m_node->node().hasFailed())
        m_ending.store(-EIO);
    std::size_t channels = 0;
    for (const GlobalId stream : tappedStreams(m_session.graph(), m_wish))
        channels = std::max(channels, m_session.graph().portsOf(stream, PortDirection::output).size());
    if (channels > 0)
        m_channels.store(channels == 1 ? 1 : SampleQueue::maxChannels);
}

void PipeWireStream::serverLost()
{
    m_ending.store(-ENOTCONN);
}

void PipeWireStream::process(const Cycle &cycle)
{
    const std::span<const float *const> channels = m_foldDown.fold(cycle);
    if (channels.empty())
        return;
    m_pause.store(pauseFor(cycle), std::memory_order_relaxed);
    m_samples.push({channels.first(m_channels.load(std::memory_order_relaxed)), cycle.frames()}, cycle.when().mRate);
}

} // namespace tolvenary
