#pragma once

#include "platform/fake/fake_calls.h"
#include "platform/io_procs.h"

#include <map>
#include <mutex>

namespace tolvenary
{

/// Runs IO blocks when it is told to. A cycle may run on another thread than main: stopping or destroying a block waits
/// for the cycle's end.
class FakeIOProcs final : public IOProcs
{
  public:
    explicit FakeIOProcs(FakeCalls &calls) : m_calls(calls) {}

    OSStatus AudioDeviceCreateIOProcIDWithBlock(AudioDeviceIOProcID &outIOProcID, AudioObjectID device,
                                                AudioDeviceIOBlock block) override;
    OSStatus AudioDeviceDestroyIOProcID(AudioObjectID device, AudioDeviceIOProcID proc) override;
    OSStatus AudioDeviceStart(AudioObjectID device, AudioDeviceIOProcID proc) override;
    OSStatus AudioDeviceStop(AudioObjectID device, AudioDeviceIOProcID proc) override;

    /// A creation reports success, but makes nothing and leaves the ID alone.
    void setMakesNothing(bool makesNothing) { m_makesNothing = makesNothing; }

    /// One cycle: hands the input to every block that runs, and returns how many did. Thread: any.
    int cycle(ConstAudioBufferList input);

    std::size_t alive() const { return m_procs.size(); }
    std::size_t running() const;

  private:
    struct Proc {
        AudioObjectID device = kAudioObjectUnknown;
        AudioDeviceIOBlock block;
        bool running = false;
    };
    OSStatus setRunning(AudioObjectID device, AudioDeviceIOProcID proc, bool running);

    FakeCalls &m_calls;
    bool m_makesNothing = false;
    mutable std::mutex m_mutex; // over the procs, and over a cycle from its beginning to its end
    std::map<AudioDeviceIOProcID, Proc> m_procs;
    std::uint64_t m_lastID = 0;
};

} // namespace tolvenary
