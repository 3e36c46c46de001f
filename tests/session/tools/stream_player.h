#pragma once

#include "tests/session/tools/player_options.h"

#include <atomic>

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

    /// Goes on, as browsers do by a new stream, in the next of some formats: mono at 8000, six channels at 96000,
    /// stereo at 44100 frames a second. Each channel has the sound of the channel of that number, in turns.
    void changeFormat();

    /// Blocks that the server has asked for. Thread: any.
    int blocksPlayed() const { return m_blocks.load(std::memory_order_relaxed); }

  private:
    void connect(const std::vector<std::string> &channels, int rate);
    void process(); // real-time

    pw_loop *m_loop;
    const PlayerOptions &m_options;
    pw_stream *m_stream = nullptr;
    std::size_t m_channels = 0;
    int m_rate = 0;
    std::size_t m_changes = 0;
    std::uint64_t m_frame = 0;
    std::atomic<int> m_blocks = 0;
};

} // namespace tolvenary::session
