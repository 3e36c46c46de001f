#pragma once

#include "platform/io_procs.h"
#include "platform/pipewire/session_node.h"
#include "platform/pipewire/stereo_fold_down.h"

#include <map>

namespace tolvenary
{

/// A device around a process tap: a node of ours that hears what the tap's streams play and hands it to IO blocks.
/// Main thread.
class TapDevice
{
  public:
    TapDevice(GraphSession &session, const std::string &name, const std::string &uid,
              std::set<std::int32_t> excludedProcesses);

    /// noErr when the device can be seen in the graph.
    OSStatus waitUntilThere();

    /// What an IO block is handed.
    AudioStreamBasicDescription streamFormat();

    OSStatus addProc(AudioDeviceIOProcID proc, AudioDeviceIOBlock block);
    OSStatus removeProc(AudioDeviceIOProcID proc);
    OSStatus start(AudioDeviceIOProcID proc);
    OSStatus stop(AudioDeviceIOProcID proc);

  private:
    void process(const Cycle &cycle); // real-time

    GraphSession &m_session;
    StereoFoldDown m_foldDown;
    AudioDeviceIOProcID m_proc{};
    AudioDeviceIOBlock m_block;
    SessionNode m_node; // declared last: its cycles use all of the above
};

} // namespace tolvenary
