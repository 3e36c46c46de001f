#include "core/mix_coordinator.h"
#include "core/tolvenary_error.h"

namespace tolvenary
{

namespace
{

/// Binds the unit to the device and reads back whether it is really bound to it. If reading fails, 0 is reported as the
/// device found, which no device is.
Result<void> bindOutput(AudioOutputUnit &unit, AudioObjectID deviceID)
{
    const OSStatus status = unit.AudioUnitSetProperty(kAudioOutputUnitProperty_CurrentDevice, kAudioUnitScope_Global, 0,
                                                      &deviceID, sizeof deviceID);
    if (status != noErr)
        return failure(status, "Failed to bind output to BlackHole (OSStatus " + std::to_string(status) + ").");

    AudioObjectID bound = kAudioObjectUnknown;
    std::uint32_t size = sizeof bound;
    unit.AudioUnitGetProperty(kAudioOutputUnitProperty_CurrentDevice, kAudioUnitScope_Global, 0, &bound, size);
    if (bound != deviceID)
        return tolvenaryFailure(outputDidNotSwitch, "Output device did not switch (got " + std::to_string(bound) +
                                                        ", wanted " + std::to_string(deviceID) + ").");
    return {};
}

} // namespace

/// Undoes nothing on failure; the caller tears down.
Result<void> MixCoordinator::setupOutputEngine(AudioObjectID deviceID)
{
    m_outputEngine.reset();
    AudioOutputUnit *const unit = m_outputEngine.outputNode().audioUnit();
    if (unit == nullptr)
        return tolvenaryFailure(noOutputUnit, "Output engine has no audio unit.");
    if (auto bound = bindOutput(*unit, deviceID); !bound)
        return bound;

    buildMixGraph();
    m_outputEngine.prepare();
    if (auto started = m_outputEngine.startAndReturnError(); !started)
        return started;
    m_feed->micPlayer().play();
    m_feed->appPlayer().play();
    return {};
}

/// Player → mixer with its gain, twice, and a third mixer that adds up the two for the output. The mixers are new for
/// each run; until then the gains keep those of the last run.
void MixCoordinator::buildMixGraph()
{
    m_outputEngine.attachNode(m_feed->micPlayer());
    m_outputEngine.attachNode(m_feed->appPlayer());
    m_micMixer = std::make_shared<AVAudioMixerNode>();
    m_appMixer = std::make_shared<AVAudioMixerNode>();
    m_outputEngine.attachNode(m_micMixer);
    m_outputEngine.attachNode(m_appMixer);
    AVAudioNode &sum =
        m_outputEngine.attachNode(std::make_shared<AVAudioMixerNode>()); // its volume is 1 from the first
    m_micMixer->setOutputVolume(m_micGain);
    m_appMixer->setOutputVolume(m_appGain);

    m_outputEngine.connect(m_feed->micPlayer(), *m_micMixer, m_mixFormat);
    m_outputEngine.connect(m_feed->appPlayer(), *m_appMixer, m_mixFormat);
    m_outputEngine.connect(*m_micMixer, sum, 0, 0, m_mixFormat);
    m_outputEngine.connect(*m_appMixer, sum, 0, 1, m_mixFormat);
    m_outputEngine.connect(sum, m_outputEngine.outputNode(), m_mixFormat);
}

} // namespace tolvenary
