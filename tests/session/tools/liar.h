#pragma once

#include "tests/session/tools/player_options.h"

#include <atomic>

struct pw_filter;
struct pw_loop;

namespace tolvenary::session
{

/// Plays through a filter of its own, where it alone says where in the shared memory its samples are: first the truth,
/// then one lie after another.
class Liar
{
  public:
    Liar(pw_loop *loop, const PlayerOptions &options);
    ~Liar();

    Liar(const Liar &) = delete;
    Liar &operator=(const Liar &) = delete;

    /// Tells the next lie and prints it; behind the last one the truth again.
    void changeStory();

  private:
    void process(std::uint32_t frames, double rate); // real-time

    const PlayerOptions &m_options;
    pw_filter *m_filter = nullptr;
    std::vector<void *> m_ports;
    std::uint64_t m_frame = 0;
    std::atomic<std::size_t> m_story = 0;
};

} // namespace tolvenary::session
