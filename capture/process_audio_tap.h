#pragma once

#include "platform/audio/av_audio_converter.h"
#include "platform/audio/av_audio_pcm_buffer_pool.h"
#include "platform/io_procs.h"
#include "platform/platform.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tolvenary
{

/// Receives one buffer in the target format and may keep it. real-time
using BufferCallback = std::function<void(AVAudioPCMBufferPtr buffer)>;

/// Captures what every other process plays: a process tap that leaves out some processes, a private device around it
/// that gives it an IO cycle, and a block in that cycle which turns its input into buffers of the target format.
///
/// Made whole or not at all; made for one run: a tap that has been stopped stays so. Thread: main, but for the cycle.
class ProcessAudioTap
{
  public:
    /// `platform` and `pool` outlive the tap; buffers are made from `pool`, so that the cycle does not allocate.
    static Result<std::unique_ptr<ProcessAudioTap>> make(Platform &platform, AVAudioPCMBufferPool &pool,
                                                         const std::vector<std::int32_t> &excludePIDs,
                                                         const AVAudioFormat &targetFormat, BufferCallback onBuffer);
    ~ProcessAudioTap();
    ProcessAudioTap(const ProcessAudioTap &) = delete;
    ProcessAudioTap &operator=(const ProcessAudioTap &) = delete;

    /// Does nothing when it runs already or has been stopped.
    Result<void> start();

    /// Ends the cycles and destroys everything, in the reverse order of its making. When it has returned, `onBuffer` is
    /// not running and will not be called again.
    void stop();

    bool isRunning() const { return m_running; }

  private:
    ProcessAudioTap(Platform &platform, AVAudioPCMBufferPool &pool, const AVAudioFormat &targetFormat,
                    BufferCallback onBuffer);

    Result<void> setup(const std::vector<std::int32_t> &excludePIDs);
    Result<AudioObjectID> translatePID(std::int32_t pid);
    Result<std::string> cfStringProperty(AudioObjectID object, std::uint32_t selector, std::uint32_t scope);
    Result<void> createTap(const std::vector<AudioObjectID> &excluded);
    Result<void> createAggregateDevice();
    Result<void> readStreamFormat();
    Result<void> createIOProc();

    void handle(ConstAudioBufferList inputData);             // real-time
    AVAudioPCMBufferPtr copy(ConstAudioBufferList source);   // real-time
    AVAudioPCMBufferPtr convert(AVAudioPCMBufferPtr buffer); // real-time

    Platform &m_platform;
    AVAudioPCMBufferPool &m_pool;
    AudioObjectID m_tapID = kAudioObjectUnknown;
    AudioObjectID m_aggregateID = kAudioObjectUnknown;
    std::optional<AudioDeviceIOProcID> m_ioProcID;
    AudioStreamBasicDescription m_streamFormat;
    std::optional<AVAudioFormat> m_avFormat;
    std::unique_ptr<AVAudioConverter> m_converter;
    AVAudioFormat m_targetFormat;
    BufferCallback m_onBuffer;
    bool m_running = false;
};

} // namespace tolvenary
