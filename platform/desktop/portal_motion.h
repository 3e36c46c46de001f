#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <optional>

namespace tolvenary
{

/// What the settings portal says about motion, from the first answer on and through every change. Thread: main, whose
/// event loop brings the answers; none comes once this object is gone.
class PortalMotion
{
  public:
    /// Asks at once, on the bus of that address. `changed` is called when the answer is there and when it changes, not
    /// before the constructor has returned.
    PortalMotion(const QString &busAddress, std::function<void()> changed);
    ~PortalMotion();
    PortalMotion(const PortalMotion &) = delete;
    PortalMotion &operator=(const PortalMotion &) = delete;

    /// Whether as little as possible is to move; nothing while no portal has answered.
    std::optional<bool> isReduced() const;

  private:
    class Watch;
    std::unique_ptr<Watch> m_watch;
};

} // namespace tolvenary
