#pragma once

#include "tests/session/tools/part.h"
#include "tests/session/tools/tool_filter.h"

namespace tolvenary::session
{

/// A sink that calls itself as its options say. What it takes it does not say, so that links into it wait; until it
/// declines all sound: then they fail, as those into a device that cannot be opened.
class UnfitSink final : public Part
{
  public:
    UnfitSink(pw_loop *loop, const PlayerOptions &options);

    void signalled() override;

  private:
    ToolFilter m_filter;
};

} // namespace tolvenary::session
