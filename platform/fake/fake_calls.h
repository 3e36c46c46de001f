#pragma once

#include "platform/os_status.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tolvenary
{

/// Every call of a platform operation, in order, and the plan of those that shall fail. Thread: main.
///
/// Operations go by their names. Where one name stands for several things a second word tells them apart: a property's
/// selector ("AudioObjectGetPropertyData tuid"), a unit's side ("AudioOutputUnitStart input").
class FakeCalls
{
  public:
    /// From now on every call of the operation returns `status`.
    void fail(const std::string &operation, OSStatus status);
    /// The `nth` call from now on returns `status`; 1 is the next one. All others succeed.
    void failCall(const std::string &operation, int nth, OSStatus status);

    /// For the fakes: notes the call and returns the status that it shall have.
    OSStatus note(const std::string &operation);

    const std::vector<std::string> &log() const { return m_log; }
    void clearLog() { m_log.clear(); }
    int count(std::string_view operation) const;

  private:
    struct Plan {
        int callsUntilFailure = 0; ///< 0 fails every call
        OSStatus status = noErr;
    };

    std::map<std::string, Plan> m_plans;
    std::vector<std::string> m_log;
};

} // namespace tolvenary
