#pragma once

namespace tolvenary::session
{

/// One of the things that the player can be, from its making to its end.
class Part
{
  public:
    Part() = default;
    virtual ~Part() = default;
    Part(const Part &) = delete;
    Part &operator=(const Part &) = delete;

    /// Does its trick, at SIGUSR1.
    virtual void signalled() {}
};

} // namespace tolvenary::session
