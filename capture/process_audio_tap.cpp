#include "capture/process_audio_tap.h"

#include "platform/aggregate_devices.h"
#include "platform/audio_object_properties.h"
#include "platform/process_info.h"
#include "platform/process_taps.h"

namespace tolvenary
{

namespace
{

std::string inParentheses(OSStatus status)
{
    return "(OSStatus " + std::to_string(status) + ").";
}

tl::unexpected<Error> callFailed(const std::string &call, OSStatus status)
{
    return failure(status, call + " failed " + inParentheses(status));
}

} // namespace

Result<std::unique_ptr<ProcessAudioTap>> ProcessAudioTap::make(Platform &platform, AVAudioPCMBufferPool &pool,
                                                               const std::vector<std::int32_t> &excludePIDs,
                                                               const AVAudioFormat &targetFormat,
                                                               BufferCallback onBuffer)
{
    std::unique_ptr<ProcessAudioTap> tap(new ProcessAudioTap(platform, pool, targetFormat, std::move(onBuffer)));
    if (Result<void> made = tap->setup(excludePIDs); !made)
        return tl::unexpected(made.error());
    return tap;
}

ProcessAudioTap::ProcessAudioTap(Platform &platform, AVAudioPCMBufferPool &pool, const AVAudioFormat &targetFormat,
                                 BufferCallback onBuffer)
    : m_platform(platform), m_pool(pool), m_targetFormat(targetFormat), m_onBuffer(std::move(onBuffer))
{
}

ProcessAudioTap::~ProcessAudioTap()
{
    stop();
}

Result<void> ProcessAudioTap::setup(const std::vector<std::int32_t> &excludePIDs)
{
    std::vector<AudioObjectID> excluded;
    for (const std::int32_t pid : excludePIDs) {
        const Result<AudioObjectID> object = translatePID(pid);
        if (!object)
            return tl::unexpected(object.error());
        excluded.push_back(*object);
    }
    return createTap(excluded)
        .and_then([this] { return createAggregateDevice(); })
        .and_then([this] { return readStreamFormat(); })
        .and_then([this] { return createIOProc(); });
}

Result<AudioObjectID> ProcessAudioTap::translatePID(std::int32_t pid)
{
    constexpr AudioObjectPropertyAddress address{kAudioHardwarePropertyTranslatePIDToProcessObject,
                                                 kAudioObjectPropertyScopeGlobal, kAudioObjectPropertyElementMain};
    AudioObjectID object = kAudioObjectUnknown;
    std::uint32_t size = sizeof object;
    const OSStatus status = m_platform.audioObjectProperties().AudioObjectGetPropertyData(
        kAudioObjectSystemObject, address, std::as_bytes(std::span(&pid, 1)), size, &object);
    if (status != noErr)
        return failure(status, "TranslatePIDToProcessObject failed for pid " + std::to_string(pid) + " " +
                                   inParentheses(status));
    return object;
}

Result<std::string> ProcessAudioTap::cfStringProperty(AudioObjectID object, std::uint32_t selector, std::uint32_t scope)
{
    std::string text;
    StringReference reference = &text;
    std::uint32_t size = sizeof reference;
    const OSStatus status = m_platform.audioObjectProperties().AudioObjectGetPropertyData(
        object, {selector, scope, kAudioObjectPropertyElementMain}, {}, size, &reference);
    if (status != noErr)
        return failure(status, "Failed to read CFString property " + inParentheses(status));
    return text;
}

Result<void> ProcessAudioTap::createTap(const std::vector<AudioObjectID> &excluded)
{
    CATapDescription description;
    description.stereoGlobalTapButExcludeProcesses = excluded;
    description.uuid = m_platform.processInfo().makeUUIDString();
    description.isPrivate = true;
    description.isExclusive = false;
    AudioObjectID tap = kAudioObjectUnknown;
    const OSStatus status = m_platform.processTaps().AudioHardwareCreateProcessTap(description, tap);
    if (status != noErr || tap == kAudioObjectUnknown) {
        return failure(status, "AudioHardwareCreateProcessTap failed (OSStatus " + std::to_string(status) +
                                   "). Likely TCC: grant Audio Capture (Screen Recording) and relaunch.");
    }
    m_tapID = tap;
    return {};
}

Result<void> ProcessAudioTap::createAggregateDevice()
{
    const Result<std::string> tapUID = cfStringProperty(m_tapID, kAudioTapPropertyUID, kAudioObjectPropertyScopeGlobal);
    if (!tapUID)
        return tl::unexpected(tapUID.error());
    const Dictionary subTap{{"uid", *tapUID}, {"drift", 1}};
    // The tap is the master and there is no sub-device: the device is only there to give the tap an IO cycle.
    const Dictionary description{{"name", std::string("TolvenaryTapAggregate")},
                                 {"uid", "com.tolvenary.tap." + m_platform.processInfo().makeUUIDString()},
                                 {"master", *tapUID},
                                 {"private", 1},
                                 {"stacked", 0},
                                 {"taps", std::vector<Dictionary>{subTap}},
                                 {"subdevices", std::vector<Dictionary>{}}};
    AudioObjectID aggregate = kAudioObjectUnknown;
    const OSStatus status = m_platform.aggregateDevices().AudioHardwareCreateAggregateDevice(description, aggregate);
    if (status != noErr || aggregate == kAudioObjectUnknown)
        return callFailed("AudioHardwareCreateAggregateDevice", status);
    m_aggregateID = aggregate;
    return {};
}

Result<void> ProcessAudioTap::readStreamFormat()
{
    AudioStreamBasicDescription format;
    std::uint32_t size = sizeof format;
    const OSStatus status = m_platform.audioObjectProperties().AudioObjectGetPropertyData(
        m_aggregateID,
        {kAudioDevicePropertyStreamFormat, kAudioObjectPropertyScopeInput, kAudioObjectPropertyElementMain}, {}, size,
        &format);
    if (status != noErr)
        return failure(status, "Failed to read aggregate stream format " + inParentheses(status));
    m_streamFormat = format;
    m_avFormat = AVAudioFormat::fromStreamDescription(format);
    // Made here, where memory may be made: the cycle would have to do it in its first call.
    if (m_avFormat && *m_avFormat != m_targetFormat)
        m_converter = AVAudioConverter::make(*m_avFormat, m_targetFormat);
    return {};
}

Result<void> ProcessAudioTap::createIOProc()
{
    AudioDeviceIOProcID proc{};
    // The cycle outlives neither stop() nor, therefore, this object.
    const OSStatus status = m_platform.ioProcs().AudioDeviceCreateIOProcIDWithBlock(
        proc, m_aggregateID,
        [this](const AudioTimeStamp &, ConstAudioBufferList inputData, const AudioTimeStamp &, AudioBufferList,
               const AudioTimeStamp &) { handle(inputData); });
    if (status != noErr || proc == AudioDeviceIOProcID{})
        return callFailed("AudioDeviceCreateIOProcIDWithBlock", status);
    m_ioProcID = proc;
    return {};
}

Result<void> ProcessAudioTap::start()
{
    if (!m_ioProcID || m_running)
        return {};
    const OSStatus status = m_platform.ioProcs().AudioDeviceStart(m_aggregateID, *m_ioProcID);
    if (status != noErr)
        return callFailed("AudioDeviceStart", status);
    m_running = true;
    return {};
}

void ProcessAudioTap::stop()
{
    if (m_running && m_ioProcID) {
        m_platform.ioProcs().AudioDeviceStop(m_aggregateID, *m_ioProcID);
        m_running = false;
    }
    if (m_ioProcID) {
        m_platform.ioProcs().AudioDeviceDestroyIOProcID(m_aggregateID, *m_ioProcID);
        m_ioProcID.reset();
    }
    if (m_aggregateID != kAudioObjectUnknown) {
        m_platform.aggregateDevices().AudioHardwareDestroyAggregateDevice(m_aggregateID);
        m_aggregateID = kAudioObjectUnknown;
    }
    if (m_tapID != kAudioObjectUnknown) {
        m_platform.processTaps().AudioHardwareDestroyProcessTap(m_tapID);
        m_tapID = kAudioObjectUnknown;
    }
}

} // namespace tolvenary
