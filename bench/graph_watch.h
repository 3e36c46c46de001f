#pragma once

#include "tests/session/support/private_session.h"

#include <chrono>
#include <memory>
#include <optional>

namespace tolvenary::bench
{

/// Hears one port of the graph and sees its nodes come and go, and stamps the moments on the threads on which they are
/// told, so that nobody's polling is in the figures.
class GraphWatch
{
  public:
    using Clock = std::chrono::steady_clock;

    /// Listens to the port "node:port".
    GraphWatch(session::PrivateSession &session, const std::string &port);
    ~GraphWatch();
    GraphWatch(const GraphWatch &) = delete;
    GraphWatch &operator=(const GraphWatch &) = delete;

    /// From now on: the first sample of at least `level` is waited for.
    void listenFor(float level);
    /// When its cycle was heard; empty until then.
    std::optional<Clock::time_point> heard() const;
    /// The last cycle was silent throughout.
    bool isSilent() const;

    /// When the last node whose name begins so went; empty while there is one, or where none has gone.
    std::optional<Clock::time_point> gone(const std::string &names) const;

  private:
    struct Client;
    std::unique_ptr<Client> m_client;
};

} // namespace tolvenary::bench
