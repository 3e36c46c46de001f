#pragma once

#include "platform/process_info.h"

namespace tolvenary
{

class UnixProcessInfo : public ProcessInfo
{
  public:
    std::int32_t processIdentifier() override;
    std::string makeUUIDString() override;
};

} // namespace tolvenary
