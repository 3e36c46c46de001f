#pragma once

#include "platform/process_info.h"

namespace tolvenary
{

/// UUIDs count up, so that a test can tell one from the next.
class FakeProcessInfo final : public ProcessInfo
{
  public:
    std::int32_t processIdentifier() override { return processID; }

    std::string makeUUIDString() override
    {
        const std::string number = std::to_string(++m_uuids);
        return "FA4E0000-0000-4000-8000-" + std::string(12 - number.size(), '0') + number;
    }

    std::int32_t processID = 4242;

  private:
    std::uint32_t m_uuids = 0;
};

} // namespace tolvenary
