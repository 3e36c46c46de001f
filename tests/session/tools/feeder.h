#pragma once

#include "tests/session/tools/player_options.h"

struct pw_filter;
struct pw_loop;

namespace tolvenary::session
{

/// Speaks into a microphone: a node with one output port a channel ("output_FL", …) that a test links by hand.
class Feeder
{
  public:
    Feeder(pw_loop *loop, const PlayerOptions &options);
    ~Feeder();

    Feeder(const Feeder &) = delete;
    Feeder &operator=(const Feeder &) = delete;

  private:
    void process(std::uint32_t frames, double rate); // real-time

    const PlayerOptions &m_options;
    pw_filter *m_filter = nullptr;
    std::vector<void *> m_ports;
    std::uint64_t m_frame = 0;
};

} // namespace tolvenary::session
