#pragma once

#include "platform/pipewire/pw_handles.h"

#include <cstdint>
#include <functional>
#include <optional>

struct pw_permission;

namespace tolvenary
{

/// What the server lets this client do with other clients' objects, as it says when asked. (What it says unasked, in
/// its announcements, goes stale.) Control thread, or under the control lock.
class ClientRights
{
  public:
    /// `changed` is called after each answer.
    ClientRights(pw_core *core, std::function<void()> changed);
    ~ClientRights();
    ClientRights(const ClientRights &) = delete;
    ClientRights &operator=(const ClientRights &) = delete;

    void ask();
    /// How often the server has answered.
    unsigned answers() const { return m_answers; }
    /// Whether we may see other clients' streams and link to them; empty before the first answer.
    std::optional<bool> mayCapture() const { return m_mayCapture; }

  private:
    struct Events;
    void told(std::uint32_t count, const pw_permission *permissions);

    pw_core *m_core;
    std::function<void()> m_changed;
    unsigned m_answers = 0;
    std::optional<bool> m_mayCapture;
    PwHandle<spa_hook> m_hook;
};

} // namespace tolvenary
