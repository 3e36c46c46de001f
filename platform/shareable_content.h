#pragma once

#include "platform/error.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace tolvenary
{

/// One running application that the user could recognise.
struct SCRunningApplication {
    std::string applicationName; ///< UTF-8, in the user's language; may be empty
    std::int32_t processID = 0;
    std::string bundleIdentifier;

    friend bool operator==(const SCRunningApplication &, const SCRunningApplication &) = default;
};

/// Lists what is running. Called on the main thread; the handler is called exactly once, on any thread.
class SCShareableContent
{
  public:
    virtual ~SCShareableContent() = default;

    using CompletionHandler = std::function<void(Result<std::vector<SCRunningApplication>> applications)>;

    virtual void getShareableContentExcludingDesktopWindows(bool excludeDesktopWindows, bool onScreenWindowsOnly,
                                                            CompletionHandler completionHandler) = 0;
};

} // namespace tolvenary
