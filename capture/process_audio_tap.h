#pragma once

#include "platform/audio/av_audio_converter.h"
#include "platform/audio/av_audio_pcm_buffer_pool.h"
#include "platform/error.h"
#include "platform/io_procs.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tolvenary
{

class AggregateDevices;
class AudioObjectProperties;
class Platform;
class ProcessInfo;
class ProcessTaps;

/// Captures what all other processes play and hands it on, cycle by cycle, in one format.
///
/// A process tap alone has no cycle. So it is wrapped in an aggregate device of its own, which contains nothing else,
/// and an IO block on that device receives the sound. A tap that has been made has all three and is not running; a tap
/// that has been stopped has none of them and cannot be started again.
///
/// Thread: main, but for the IO block and `onBuffer`, which run on the device's real-time thread, and not after stop().
class ProcessAudioTap
{
  public:
    /// real-time: takes each block, in the target format. The buffer is new for the call and the callee's to keep.
    using OnBuffer = std::function<void(AVAudioPCMBufferPtr buffer)>;

    /// Captures every process but those listed. The platform and the pool outlive the tap, and the pool the buffers.
    /// A failure carries the status of the operation that failed; whatever was made before it is gone again.
    static Result<std::unique_ptr<ProcessAudioTap>> create(Platform &platform, AVAudioPCMBufferPool &pool,
                                                           std::span<const std::int32_t> excludePIDs,
                                                           const AVAudioFormat &targetFormat, OnBuffer onBuffer);

    /// Stops first.
    ~ProcessAudioTap();
    ProcessAudioTap(const ProcessAudioTap &) = delete;
    ProcessAudioTap &operator=(const ProcessAudioTap &) = delete;

    /// Does nothing if it runs already, or was stopped.
    Result<void> start();

    /// Stops and destroys everything, in the reverse order of its making; never fails, may be called again.
    void stop();

    bool isRunning() const { return m_running; }

    /// What the device delivers; all zero, or empty, if that is not known.
    const AudioStreamBasicDescription &streamFormat() const { return m_streamFormat; }
    const std::optional<AVAudioFormat> &avFormat() const { return m_avFormat; }
    bool hasConverter() const { return m_converter != nullptr; }

  private:
    ProcessAudioTap(Platform &platform, AVAudioPCMBufferPool &pool, const AVAudioFormat &targetFormat,
                    OnBuffer onBuffer);

    Result<void> setup(std::span<const std::int32_t> excludePIDs);
    Result<void> createTap(std::span<const std::int32_t> excludePIDs);
    Result<void> createAggregateDevice();
    Result<void> readStreamFormat();
    Result<void> createIOProc();
    void makeConverter();

    Result<AudioObjectID> translatePID(std::int32_t pid);
    Result<std::string> cfStringProperty(AudioObjectID object, std::uint32_t selector, std::uint32_t scope);

    // real-time, in tap_buffer_conversion.cpp
    void handle(ConstAudioBufferList inputData);
    AVAudioPCMBufferPtr copyInput(ConstAudioBufferList inputData);
    AVAudioPCMBufferPtr convert(AVAudioPCMBufferPtr buffer);

    AudioObjectProperties &m_properties;
    ProcessTaps &m_taps;
    AggregateDevices &m_aggregates;
    IOProcs &m_ioProcs;
    ProcessInfo &m_processInfo;
    AVAudioPCMBufferPool &m_pool;

    AudioObjectID m_tapID = kAudioObjectUnknown;
    AudioObjectID m_aggregateID = kAudioObjectUnknown;
    std::optional<AudioDeviceIOProcID> m_ioProcID;
    AudioStreamBasicDescription m_streamFormat;
    std::optional<AVAudioFormat> m_avFormat;
    bool m_isInTargetFormat = false; ///< what the device delivers; compared once, not in each cycle
    std::unique_ptr<AVAudioConverter> m_converter;
    const AVAudioFormat m_targetFormat;
    const OnBuffer m_onBuffer;
    bool m_running = false;
};

} // namespace tolvenary
