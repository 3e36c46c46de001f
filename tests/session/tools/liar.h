#pragma once

#include "tests/session/tools/part.h"
#include "tests/session/tools/tool_filter.h"

#include <atomic>

namespace tolvenary::session
{

/// Plays through a filter of its own, where it alone says where in the shared memory its samples are: first the truth,
/// then one lie after another.
class Liar final : public Part
{
  public:
    Liar(pw_loop *loop, const PlayerOptions &options);

    /// Tells the next lie and prints it; behind the last one the truth again.
    void signalled() override;

  private:
    void process(std::uint32_t frames, double rate); // real-time

    const PlayerOptions &m_options;
    std::uint64_t m_frame = 0;
    std::atomic<std::size_t> m_story = 0;
    ToolFilter m_filter; // declared last: its thread calls back into all of the above
};

} // namespace tolvenary::session
