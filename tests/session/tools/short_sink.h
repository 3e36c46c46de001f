#pragma once

#include "tests/session/tools/player_options.h"

#include <atomic>

struct pw_filter;
struct pw_loop;

namespace tolvenary::session
{

/// A sink with room for a short cycle only, that says at SIGUSR1 whether it has heard anything since it last said so.
class ShortSink
{
  public:
    ShortSink(pw_loop *loop, const PlayerOptions &options);
    ~ShortSink();

    ShortSink(const ShortSink &) = delete;
    ShortSink &operator=(const ShortSink &) = delete;

    void tell();

    static constexpr std::uint32_t longestCycle = 128;

  private:
    void process(); // real-time

    pw_filter *m_filter = nullptr;
    std::vector<void *> m_ports;
    std::atomic<bool> m_hasHeard = false;
};

} // namespace tolvenary::session
