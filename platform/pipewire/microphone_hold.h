#pragma once

#include "platform/pipewire/growing_pause.h"

#include <cstdint>
#include <optional>

namespace tolvenary
{

/// Keeps a microphone that hangs from silencing the applications.
///
/// The server makes links one after the other, and each waits until the programs at its ends have agreed on a format.
/// A program that hangs never answers, and whatever is to be linked after its microphone, the applications and the
/// order of the nodes, waits with it. So a microphone that is not linked within two seconds is held back, which lets
/// the others pass, and tried again after pauses that grow: each attempt may hold up new links, and costs the server
/// descriptors that the program does not take.
///
/// Pure logic: fed with the present state, answers whether to hold. Control thread.
class MicrophoneHold
{
  public:
    using Time = GrowingPause::Time;

    /// `microphone` is the serial of the node that shall be heard; a new one is not held for what the old one did.
    void follow(std::optional<std::uint64_t> microphone);

    /// From time to time. `isAwaited`: a link to us has been asked for and is not made, though the server answers.
    void observe(bool isAwaited, Time now);

    /// Whether the microphone is not to be linked for now.
    bool isHolding() const { return m_pause.isUnderWay(); }

  private:
    std::optional<std::uint64_t> m_microphone;
    std::optional<Time> m_awaitedSince;
    GrowingPause m_pause{Time(2), Time(256)};
};

} // namespace tolvenary
