#pragma once

#include "platform/capture_stream.h"
#include "platform/pipewire/sample_queue.h"
#include "platform/pipewire/serial_queue.h"
#include "platform/pipewire/session_node.h"
#include "platform/pipewire/stereo_fold_down.h"

#include <atomic>

namespace tolvenary
{

/// A node of ours that hears what one process plays, or all but this one, and a queue that hands it to the outputs. It
/// ends when the server goes away: unlike a tap's device it is not made again.
class PipeWireStream final : public SCStream, private GraphWatcher
{
  public:
    PipeWireStream(GraphSession &session, const SCContentFilter &filter, std::weak_ptr<SCStreamDelegate> delegate);
    ~PipeWireStream() override;
    PipeWireStream(const PipeWireStream &) = delete;
    PipeWireStream &operator=(const PipeWireStream &) = delete;

    OSStatus addStreamOutput(std::weak_ptr<SCStreamOutput> output, SCStreamOutputType type) override;
    void startCaptureWithCompletionHandler(CompletionHandler completionHandler) override;
    void stopCaptureWithCompletionHandler(CompletionHandler completionHandler) override;

  private:
    struct Output {
        std::weak_ptr<SCStreamOutput> target;
        SCStreamOutputType type;
    };

    // On the queue.
    Result<void> start();
    Result<void> stop();
    OSStatus makeNode();
    void removeNode();
    std::optional<std::chrono::nanoseconds> look();
    void deliver(const CMSampleBuffer &sampleBuffer);
    void endWithError();

    // Under the control lock.
    void graphChanged() override;
    void serverLost() override;

    void process(const Cycle &cycle); // real-time

    GraphSession &m_session;
    const TapWish m_wish;
    const std::weak_ptr<SCStreamDelegate> m_delegate;
    std::vector<Output> m_outputs;

    StereoFoldDown m_foldDown;
    SampleQueue m_samples;
    std::atomic<std::uint32_t> m_channels = SampleQueue::maxChannels;
    std::atomic<std::chrono::nanoseconds> m_pause;
    std::atomic<OSStatus> m_ending = noErr; ///< why the stream cannot go on

    std::unique_ptr<SessionNode> m_node; // its cycles use all of the above
    std::optional<SerialQueue> m_queue;  // declared last: it uses all of the above
};

} // namespace tolvenary
