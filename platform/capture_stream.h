#pragma once

#include "platform/error.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace tolvenary
{

class CMSampleBuffer;
class SCStream;

/// What a stream delivers.
enum class SCStreamOutputType : int { screen = 0, audio = 1, microphone = 2 };

/// Takes a stream's samples. Thread: the stream's queue, one call at a time.
class SCStreamOutput
{
  public:
    virtual ~SCStreamOutput() = default;

    /// Must not destroy the stream.
    virtual void streamDidOutputSampleBufferOfType(SCStream &stream, const CMSampleBuffer &sampleBuffer,
                                                   SCStreamOutputType type) = 0;
};

/// Is told when a stream ends. Thread: the stream's queue.
class SCStreamDelegate
{
  public:
    virtual ~SCStreamDelegate() = default;

    /// The stream has ended by itself. Called at most once per start, as the last call; must not destroy the stream.
    virtual void streamDidStopWithError(SCStream &stream, const Error &error) = 0;
};

/// What a stream shall capture.
struct SCContentFilter {
    /// The application; without one all of the system but this program itself.
    std::optional<std::int32_t> processID;
};

/// Captures what applications play and hands it to its outputs, on a queue (a thread) of its own, in whatever format
/// the sound has: it may change from one sample buffer to the next. Outputs and delegate are not kept alive; they may
/// go away at any time.
///
/// Thread: main. The handlers are called exactly once each, on the queue, and must not destroy the stream there.
class SCStream
{
  public:
    using CompletionHandler = std::function<void(Result<void> result)>;

    /// Stops. Afterwards no output and no delegate is being called, or will be.
    virtual ~SCStream() = default;

    /// Samples of the type go to `output` from now on. A type of which there is nothing to capture is accepted.
    virtual OSStatus addStreamOutput(std::weak_ptr<SCStreamOutput> output, SCStreamOutputType type) = 0;

    /// None of these waits for the sound server. A start that fails leaves a stream that does not run; to stop a stream
    /// that does not run is a failure without consequences.
    virtual void startCaptureWithCompletionHandler(CompletionHandler completionHandler) = 0;
    /// When the handler is called, no output is being called, or will be.
    virtual void stopCaptureWithCompletionHandler(CompletionHandler completionHandler) = 0;
};

/// Makes streams. Thread: main.
class SCStreams
{
  public:
    virtual ~SCStreams() = default;

    virtual std::unique_ptr<SCStream> makeStream(const SCContentFilter &filter,
                                                 std::weak_ptr<SCStreamDelegate> delegate) = 0;
};

} // namespace tolvenary
