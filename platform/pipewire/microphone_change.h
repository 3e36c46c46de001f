#pragma once

#include "platform/pipewire/graph.h"

#include <chrono>
#include <optional>

namespace tolvenary
{

/// Lets one microphone take over from another without a break.
///
/// Our node has its input ports twice. The microphone that becomes the default is linked to the set that is free, and
/// the old one stays linked to the other until the new one has been heard: a link takes some cycles to carry sound, and
/// a sleeping source takes more. If the new one is not heard in time, the old one goes all the same, as the user wants.
///
/// Pure logic: fed with the present state, answers with what shall be linked. Control thread.
class MicrophoneChange
{
  public:
    using Time = std::chrono::duration<double>;

    /// `microphone` is the serial of the node that shall be heard (its id may be another's when it has gone),
    /// `heardSet` the set of ports that was heard last.
    void observe(std::optional<std::uint64_t> microphone, std::size_t heardSet, Time now);

    /// The set of ports for the microphone of now.
    std::size_t set() const { return m_set; }
    /// The microphone that stays linked to the other set for now.
    std::optional<std::uint64_t> leaving() const { return m_leaving; }

  private:
    void begin(std::optional<std::uint64_t> microphone, std::size_t heardSet);

    std::optional<std::uint64_t> m_microphone;
    std::optional<std::uint64_t> m_leaving;
    std::size_t m_set = 0;
    Time m_since{};
};

} // namespace tolvenary
