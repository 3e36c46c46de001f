#pragma once

#include "tests/session/tools/player_options.h"

struct pw_filter;
struct pw_loop;

namespace tolvenary::session
{

/// A sink that calls itself as its options say. What it takes it does not say, so that links into it wait; until it
/// declines all sound: then they fail, as those into a device that cannot be opened.
class UnfitSink
{
  public:
    UnfitSink(pw_loop *loop, const PlayerOptions &options);
    ~UnfitSink();

    UnfitSink(const UnfitSink &) = delete;
    UnfitSink &operator=(const UnfitSink &) = delete;

    void decline();

  private:
    pw_filter *m_filter = nullptr;
    std::vector<void *> m_ports;
};

} // namespace tolvenary::session
