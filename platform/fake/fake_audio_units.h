#pragma once

#include "platform/audio_units.h"
#include "platform/fake/fake_calls.h"
#include "platform/fake/fake_objects.h"

#include <mutex>
#include <optional>

namespace tolvenary
{

/// Makes units that run when they are told to. One output unit and one input unit can be driven at a time: the ones
/// made last. A cycle may run on another thread than main: stopping or destroying a unit waits for the cycle's end.
class FakeAudioUnits final : public AudioUnits
{
  public:
    FakeAudioUnits(FakeCalls &calls, const FakeObjects &objects) : m_calls(calls), m_objects(objects) {}

    std::unique_ptr<AudioOutputUnit> makeOutputUnit() override;
    std::unique_ptr<AudioInputUnit> makeInputUnit() override;

    // What the system is like; set these before a unit is made.
    bool hasOutputUnit = true;
    bool hasInputUnit = true;
    InputUnitFormat inputFormat{48000, 2};
    double outputSampleRate = 48000;
    /// The current device as it is read back, whatever was set.
    std::optional<AudioObjectID> readsBack;

    /// One cycle of the output: has the block filled. False, and nothing written, while no unit runs. Thread: any.
    bool outputCycle(PlanarBlock output);
    /// One cycle of the input. False while no unit runs. Thread: any.
    bool inputCycle(ConstPlanarBlock input);

    /// The device that was set last; unknown without a unit.
    AudioObjectID boundDevice() const;

    bool outputIsRunning() const;
    bool inputIsRunning() const;
    int alive() const { return m_alive; }

  private:
    class OutputUnit;
    class InputUnit;

    FakeCalls &m_calls;
    const FakeObjects &m_objects;
    int m_alive = 0;

    mutable std::mutex m_mutex; // over what follows, and over a cycle from its beginning to its end
    OutputUnit *m_output = nullptr;
    InputUnit *m_input = nullptr;
};

} // namespace tolvenary
