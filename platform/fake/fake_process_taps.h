#pragma once

#include "platform/fake/fake_calls.h"
#include "platform/fake/fake_objects.h"
#include "platform/process_taps.h"

namespace tolvenary
{

class FakeProcessTaps final : public ProcessTaps
{
  public:
    FakeProcessTaps(FakeCalls &calls, FakeObjects &objects) : m_calls(calls), m_objects(objects) {}

    OSStatus AudioHardwareCreateProcessTap(const CATapDescription &description, AudioObjectID &outTap) override;
    OSStatus AudioHardwareDestroyProcessTap(AudioObjectID tap) override;

    /// A creation reports success, but makes nothing and leaves the ID alone.
    void setMakesNothing(bool makesNothing) { m_makesNothing = makesNothing; }

    /// Of every tap asked for, in order.
    const std::vector<CATapDescription> &descriptions() const { return m_descriptions; }
    std::size_t alive() const { return m_objects.taps.size(); }

  private:
    FakeCalls &m_calls;
    FakeObjects &m_objects;
    bool m_makesNothing = false;
    std::vector<CATapDescription> m_descriptions;
};

} // namespace tolvenary
