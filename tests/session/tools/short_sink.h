#pragma once

#include "tests/session/tools/part.h"
#include "tests/session/tools/tool_filter.h"

#include <atomic>

namespace tolvenary::session
{

/// A sink with room for a short cycle only, that says at SIGUSR1 whether it has heard anything since it last said so.
class ShortSink final : public Part
{
  public:
    ShortSink(pw_loop *loop, const PlayerOptions &options);

    void signalled() override;

    static constexpr std::uint32_t longestCycle = 128;

  private:
    void process(); // real-time

    std::atomic<bool> m_hasHeard = false;
    ToolFilter m_filter; // declared last: its thread calls back into all of the above
};

} // namespace tolvenary::session
