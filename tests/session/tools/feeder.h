#pragma once

#include "tests/session/tools/part.h"
#include "tests/session/tools/tool_filter.h"

namespace tolvenary::session
{

/// Speaks into a microphone: a node with one output port a channel ("output_FL", …) that a test links by hand.
class Feeder final : public Part
{
  public:
    Feeder(pw_loop *loop, const PlayerOptions &options);

  private:
    void process(std::uint32_t frames, double rate); // real-time

    const PlayerOptions &m_options;
    std::uint64_t m_frame = 0;
    ToolFilter m_filter; // declared last: its thread calls back into all of the above
};

} // namespace tolvenary::session
