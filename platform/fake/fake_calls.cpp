#include "platform/fake/fake_calls.h"

#include <algorithm>

namespace tolvenary
{

void FakeCalls::fail(const std::string &operation, OSStatus status)
{
    m_plans[operation] = {0, status};
}

void FakeCalls::failCall(const std::string &operation, int nth, OSStatus status)
{
    m_plans[operation] = {nth, status};
}

OSStatus FakeCalls::note(const std::string &operation)
{
    m_log.push_back(operation);
    const auto plan = m_plans.find(operation);
    if (plan == m_plans.end())
        return noErr;
    const OSStatus status = plan->second.status;
    if (plan->second.callsUntilFailure == 0)
        return status;
    if (--plan->second.callsUntilFailure > 0)
        return noErr;
    m_plans.erase(plan);
    return status;
}

int FakeCalls::count(std::string_view operation) const
{
    return static_cast<int>(std::count(m_log.begin(), m_log.end(), operation));
}

} // namespace tolvenary
