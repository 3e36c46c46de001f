#pragma once

#include "tests/session/tools/player_options.h"

struct pw_loop;
struct pw_stream;

namespace tolvenary::session
{

/// Plays as applications do: a stream that the session manager links to the default sink. Or shows up as a microphone
/// and keeps quiet.
class StreamPlayer
{
  public:
    StreamPlayer(pw_loop *loop, const PlayerOptions &options);
    ~StreamPlayer();

    StreamPlayer(const StreamPlayer &) = delete;
    StreamPlayer &operator=(const StreamPlayer &) = delete;

  private:
    void process(); // real-time

    const PlayerOptions &m_options;
    pw_stream *m_stream = nullptr;
    std::uint64_t m_frame = 0;
};

} // namespace tolvenary::session
