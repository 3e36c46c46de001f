#pragma once

#include "tests/session/support/private_session.h"
#include "tests/session/support/recording.h"

#include <memory>

namespace tolvenary::session
{

/// Records any ports of the graph into sample-exact tracks: one node with one input a track, so that all tracks are
/// taken in the same cycle. Not part of what it observes: it plays nothing and makes nothing wait.
class Recorder
{
  public:
    /// One track for each port named "node:port"; the ports must exist or appear soon.
    Recorder(PrivateSession &session, const std::vector<std::string> &ports);
    ~Recorder();

    Recorder(const Recorder &) = delete;
    Recorder &operator=(const Recorder &) = delete;

    /// Records at least this many frames, beginning now, and returns them. `meanwhile` is called again and again by
    /// the waiting thread (a test runs its event loop there). Throws when the graph does not run.
    Recording record(std::size_t frames, const std::function<void()> &meanwhile = {});

    /// The same in two steps, to do something in between.
    void begin(std::size_t frames);
    bool isDone() const;
    Recording finish(const std::function<void()> &meanwhile = {});

    /// Links another port to a track, which then carries the sum; for a port that came later.
    void connect(std::size_t track, const std::string &port);

    static constexpr const char *nodeName = "session-recorder";

  private:
    struct Node;

    PrivateSession &m_session;
    std::unique_ptr<Node> m_node;
};

} // namespace tolvenary::session
