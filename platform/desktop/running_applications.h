#pragma once

#include "platform/audio_clients.h"
#include "platform/shareable_content.h"

#include <filesystem>
#include <future>
#include <vector>

namespace tolvenary
{

/// The applications that run in this session: the visible ones of the desktop that have a process, and whatever owns
/// a sound stream. The sound server is asked on the calling thread, the rest is read on a thread of its own, where the
/// handler is then called; a failure of the sound server is handed on at once.
class RunningApplications : public SCShareableContent
{
  public:
    /// `clients` outlives it. Tests give another root than the system's.
    explicit RunningApplications(AudioClients &clients, std::filesystem::path proc = "/proc");

    /// Waits for the scans that are under way; no handler is called afterwards.
    ~RunningApplications() override;

    /// Neither option changes the list: there is no general way to ask Linux desktops which windows are shown.
    void getShareableContentExcludingDesktopWindows(bool excludeDesktopWindows, bool onScreenWindowsOnly,
                                                    CompletionHandler completionHandler) override;

  private:
    AudioClients &m_clients;
    std::filesystem::path m_proc;
    std::vector<std::future<void>> m_scans;
};

} // namespace tolvenary
