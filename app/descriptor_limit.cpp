#include "app/descriptor_limit.h"

#include <sys/resource.h>

namespace tolvenary
{

void raiseDescriptorLimit()
{
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max;
    // If it is refused, the limit that we have is enough in most cases.
    setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace tolvenary
