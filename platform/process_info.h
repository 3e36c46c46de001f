#pragma once

#include <cstdint>
#include <string>

namespace tolvenary
{

/// Who we are. Thread: any.
class ProcessInfo
{
  public:
    virtual ~ProcessInfo() = default;

    virtual std::int32_t processIdentifier() = 0;

    /// A fresh random UUID, 36 upper-case hyphenated characters.
    virtual std::string makeUUIDString() = 0;
};

} // namespace tolvenary
