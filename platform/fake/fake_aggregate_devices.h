#pragma once

#include "platform/aggregate_devices.h"
#include "platform/fake/fake_calls.h"
#include "platform/fake/fake_objects.h"

namespace tolvenary
{

class FakeAggregateDevices final : public AggregateDevices
{
  public:
    FakeAggregateDevices(FakeCalls &calls, FakeObjects &objects) : m_calls(calls), m_objects(objects) {}

    OSStatus AudioHardwareCreateAggregateDevice(const Dictionary &description, AudioObjectID &outDevice) override;
    OSStatus AudioHardwareDestroyAggregateDevice(AudioObjectID device) override;

    /// A creation reports success, but makes nothing and leaves the ID alone.
    void setMakesNothing(bool makesNothing) { m_makesNothing = makesNothing; }

    /// Of every device asked for, in order.
    const std::vector<Dictionary> &descriptions() const { return m_descriptions; }
    std::size_t alive() const { return m_objects.aggregates.size(); }

  private:
    FakeCalls &m_calls;
    FakeObjects &m_objects;
    bool m_makesNothing = false;
    std::vector<Dictionary> m_descriptions;
};

} // namespace tolvenary
