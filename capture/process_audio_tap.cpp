#include "capture/process_audio_tap.h"

#include "platform/aggregate_devices.h"
#include "platform/audio_object_properties.h"
#include "platform/platform.h"
#include "platform/process_info.h"
#include "platform/process_taps.h"

#include <utility>
#include <vector>

namespace tolvenary
{

namespace
{

constexpr AudioDeviceIOProcID noIOProc{};

std::string osStatus(OSStatus status)
{
    return "(OSStatus " + std::to_string(status) + ")";
}

/// The device exists only to give the tap a cycle: it has no sub-device, and the tap itself takes the place of the
/// clock.
Dictionary aggregateDescription(const std::string &uid, const std::string &tapUID)
{
    const Dictionary tap{{"uid", tapUID}, {"drift", 1}};
    return {
        {"name", std::string("TolvenaryTapAggregate")},
        {"uid", uid},
        {"master", tapUID},
        {"private", 1},
        {"stacked", 0},
        {"taps", std::vector<Dictionary>{tap}},
        {"subdevices", std::vector<Dictionary>{}},
    };
}

} // namespace

Result<std::unique_ptr<ProcessAudioTap>> ProcessAudioTap::create(Platform &platform, AVAudioPCMBufferPool &pool,
                                                                 std::span<const std::int32_t> excludePIDs,
                                                                 const AVAudioFormat &targetFormat, OnBuffer onBuffer)
{
    std::unique_ptr<ProcessAudioTap> tap(new ProcessAudioTap(platform, pool, targetFormat, std::move(onBuffer)));
    if (const auto ready = tap->setup(excludePIDs); !ready)
        return tl::unexpected(ready.error());
    return tap;
}

ProcessAudioTap::ProcessAudioTap(Platform &platform, AVAudioPCMBufferPool &pool, const AVAudioFormat &targetFormat,
                                 OnBuffer onBuffer)
    : m_properties(platform.audioObjectProperties()),
      m_taps(platform.processTaps()),
      m_aggregates(platform.aggregateDevices()),
      m_ioProcs(platform.ioProcs()),
      m_processInfo(platform.processInfo()),
      m_pool(pool),
      m_targetFormat(targetFormat),
      m_onBuffer(std::move(onBuffer))
{
}

ProcessAudioTap::~ProcessAudioTap()
{
    stop();
}

Result<void> ProcessAudioTap::setup(std::span<const std::int32_t> excludePIDs)
{
    return createTap(excludePIDs)
        .and_then([this] { return createAggregateDevice(); })
        .and_then([this] { return readStreamFormat(); })
        .and_then([this] { return createIOProc(); });
}

Result<void> ProcessAudioTap::createTap(std::span<const std::int32_t> excludePIDs)
{
    CATapDescription description;
    for (const std::int32_t pid : excludePIDs) {
        const auto process = translatePID(pid);
        if (!process)
            return tl::unexpected(process.error());
        description.stereoGlobalTapButExcludeProcesses.push_back(*process);
    }
    description.uuid = m_processInfo.makeUUIDString();
    description.isPrivate = true;
    description.isExclusive = false;

    AudioObjectID tap = kAudioObjectUnknown;
    const OSStatus status = m_taps.AudioHardwareCreateProcessTap(description, tap);
    if (status != noErr || tap == kAudioObjectUnknown)
        return failure(status, "AudioHardwareCreateProcessTap failed " + osStatus(status) +
                                   ". Likely TCC: grant Audio Capture (Screen Recording) and relaunch.");
    m_tapID = tap;
    return {};
}

Result<void> ProcessAudioTap::createAggregateDevice()
{
    const auto tapUID = cfStringProperty(m_tapID, kAudioTapPropertyUID, kAudioObjectPropertyScopeGlobal);
    if (!tapUID)
        return tl::unexpected(tapUID.error());
    const std::string uid = "com.tolvenary.tap." + m_processInfo.makeUUIDString();

    AudioObjectID aggregate = kAudioObjectUnknown;
    const OSStatus status =
        m_aggregates.AudioHardwareCreateAggregateDevice(aggregateDescription(uid, *tapUID), aggregate);
    if (status != noErr || aggregate == kAudioObjectUnknown)
        return failure(status, "AudioHardwareCreateAggregateDevice failed " + osStatus(status) + ".");
    m_aggregateID = aggregate;
    return {};
}

Result<void> ProcessAudioTap::readStreamFormat()
{
    const AudioObjectPropertyAddress address{kAudioDevicePropertyStreamFormat, kAudioObjectPropertyScopeInput,
                                             kAudioObjectPropertyElementMain};
    AudioStreamBasicDescription description;
    std::uint32_t size = sizeof description;
    const OSStatus status = m_properties.AudioObjectGetPropertyData(m_aggregateID, address, {}, size, &description);
    if (status != noErr)
        return failure(status, "Failed to read aggregate stream format " + osStatus(status) + ".");
    m_streamFormat = description;
    m_avFormat = AVAudioFormat::fromStreamDescription(description);
    m_isInTargetFormat = m_avFormat == m_targetFormat;
    makeConverter();
    return {};
}

/// Making a converter allocates, so it happens before the first cycle, which needs it on the real-time thread. If the
/// formats are equal, there is nothing to convert.
void ProcessAudioTap::makeConverter()
{
    if (m_converter == nullptr && m_avFormat && !m_isInTargetFormat)
        m_converter = AVAudioConverter::make(*m_avFormat, m_targetFormat);
}

Result<void> ProcessAudioTap::createIOProc()
{
    AudioDeviceIOProcID proc = noIOProc;
    const OSStatus status = m_ioProcs.AudioDeviceCreateIOProcIDWithBlock(
        proc, m_aggregateID,
        [this](const AudioTimeStamp &, ConstAudioBufferList inInputData, const AudioTimeStamp &, AudioBufferList,
               const AudioTimeStamp &) { handle(inInputData); });
    if (status != noErr || proc == noIOProc)
        return failure(status, "AudioDeviceCreateIOProcIDWithBlock failed " + osStatus(status) + ".");
    m_ioProcID = proc;
    return {};
}

/// A process without a sound object translates to 0, which excludes nothing.
Result<AudioObjectID> ProcessAudioTap::translatePID(std::int32_t pid)
{
    const AudioObjectPropertyAddress address{kAudioHardwarePropertyTranslatePIDToProcessObject,
                                             kAudioObjectPropertyScopeGlobal, kAudioObjectPropertyElementMain};
    AudioObjectID process = kAudioObjectUnknown;
    std::uint32_t size = sizeof process;
    const OSStatus status = m_properties.AudioObjectGetPropertyData(kAudioObjectSystemObject, address,
                                                                    std::as_bytes(std::span(&pid, 1)), size, &process);
    if (status != noErr)
        return failure(status, "TranslatePIDToProcessObject failed for pid " + std::to_string(pid) + " " +
                                   osStatus(status) + ".");
    return process;
}

Result<std::string> ProcessAudioTap::cfStringProperty(AudioObjectID object, std::uint32_t selector, std::uint32_t scope)
{
    std::string text;
    StringReference reference = &text;
    std::uint32_t size = sizeof(StringReference);
    const OSStatus status = m_properties.AudioObjectGetPropertyData(
        object, {selector, scope, kAudioObjectPropertyElementMain}, {}, size, &reference);
    if (status != noErr)
        return failure(status, "Failed to read CFString property " + osStatus(status) + ".");
    return text;
}

Result<void> ProcessAudioTap::start()
{
    if (!m_ioProcID || m_running)
        return {};
    makeConverter(); // tried once more, in case that there was no memory for it before
    const OSStatus status = m_ioProcs.AudioDeviceStart(m_aggregateID, *m_ioProcID);
    if (status != noErr)
        return failure(status, "AudioDeviceStart failed " + osStatus(status) + ".");
    m_running = true;
    return {};
}

void ProcessAudioTap::stop()
{
    if (m_running && m_ioProcID) {
        m_ioProcs.AudioDeviceStop(m_aggregateID, *m_ioProcID);
        m_running = false;
    }
    if (m_ioProcID) {
        m_ioProcs.AudioDeviceDestroyIOProcID(m_aggregateID, *m_ioProcID);
        m_ioProcID.reset();
    }
    if (m_aggregateID != kAudioObjectUnknown) {
        m_aggregates.AudioHardwareDestroyAggregateDevice(m_aggregateID);
        m_aggregateID = kAudioObjectUnknown;
    }
    if (m_tapID != kAudioObjectUnknown) {
        m_taps.AudioHardwareDestroyProcessTap(m_tapID);
        m_tapID = kAudioObjectUnknown;
    }
}

} // namespace tolvenary
