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
    // Where it is refused, the limit that we have will do for most.
    setrlimit(RLIMIT_NOFILE, &limit);
}

} // namespace tolvenary
