#pragma once

#include "tests/session/listening.h"

#include <filesystem>

namespace tolvenary::session
{

/// A program that records a source which it picked by name from the pulse server's list, as a chat application does.
class ChatApplication
{
  public:
    ChatApplication(PrivateSession &session, const std::string &source);

    /// What it heard last in both channels, one after the other; empty while it has not heard that much.
    std::vector<Samples> heardLast(std::size_t frames) const;

  private:
    std::filesystem::path m_file;
    std::unique_ptr<ChildProcess> m_recorder;
};

/// Whether it comes to hear the whole mix in both channels.
bool comesToHearTheMix(MixBed &bed, const ChatApplication &chat);

/// How the pulse server describes the source of this name, and whether it is a sink's monitor; empty without the
/// source.
struct ListedSource {
    std::string description;
    bool isMonitor = false;
};

std::optional<ListedSource> listedSource(const std::string &name);

} // namespace tolvenary::session
