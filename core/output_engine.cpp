#include "core/mix_coordinator.h"

namespace tolvenary
{

namespace
{

constexpr int noAudioUnit = 20;
constexpr int deviceDidNotSwitch = 21;

} // namespace

Result<void> MixCoordinator::setupOutputEngine(AudioObjectID deviceID)
{
    m_outputEngine.reset();
    if (Result<void> bound = bindOutput(deviceID); !bound)
        return bound;
    buildOutputGraph();
    m_outputEngine.prepare();
    if (Result<void> started = m_outputEngine.startAndReturnError(); !started)
        return started;
    m_feed->micPlayer().play();
    m_feed->appPlayer().play();
    return {};
}

Result<void> MixCoordinator::bindOutput(AudioObjectID deviceID)
{
    AudioOutputUnit *unit = m_outputEngine.outputNode().audioUnit();
    if (unit == nullptr)
        return tl::unexpected(Error{"Tolvenary", noAudioUnit, "Output engine has no audio unit."});

    const OSStatus status = unit->AudioUnitSetProperty(kAudioOutputUnitProperty_CurrentDevice, kAudioUnitScope_Global,
                                                       0, &deviceID, sizeof deviceID);
    if (status != noErr)
        return failure(status, "Failed to bind output to BlackHole (OSStatus " + std::to_string(status) + ").");

    // A failed read leaves 0, which is then what the user is told.
    AudioObjectID bound = kAudioObjectUnknown;
    std::uint32_t size = sizeof bound;
    unit->AudioUnitGetProperty(kAudioOutputUnitProperty_CurrentDevice, kAudioUnitScope_Global, 0, &bound, size);
    if (bound != deviceID) {
        return tl::unexpected(Error{"Tolvenary", deviceDidNotSwitch,
                                    "Output device did not switch (got " + std::to_string(bound) + ", wanted " +
                                        std::to_string(deviceID) + ")."});
    }
    return {};
}

// players -> their gains -> sum -> device; new mixers for each run.
void MixCoordinator::buildOutputGraph()
{
    m_outputEngine.attachNode(m_feed->micPlayer());
    m_outputEngine.attachNode(m_feed->appPlayer());
    m_micMixer = std::make_shared<AVAudioMixerNode>();
    m_appMixer = std::make_shared<AVAudioMixerNode>();
    const auto sumMixer = std::make_shared<AVAudioMixerNode>();
    m_outputEngine.attachNode(m_micMixer);
    m_outputEngine.attachNode(m_appMixer);
    m_outputEngine.attachNode(sumMixer);
    m_micMixer->setOutputVolume(m_micGain);
    m_appMixer->setOutputVolume(m_appGain);
    sumMixer->setOutputVolume(1);
    m_outputEngine.connect(m_feed->micPlayer(), *m_micMixer, m_mixFormat);
    m_outputEngine.connect(m_feed->appPlayer(), *m_appMixer, m_mixFormat);
    m_outputEngine.connect(*m_micMixer, *sumMixer, 0, 0, m_mixFormat);
    m_outputEngine.connect(*m_appMixer, *sumMixer, 0, 1, m_mixFormat);
    m_outputEngine.connect(*sumMixer, m_outputEngine.outputNode(), m_mixFormat);
}

} // namespace tolvenary
