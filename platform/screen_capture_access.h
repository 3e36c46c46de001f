#pragma once

namespace tolvenary
{

/// Whether the system lets this program hear what other programs play. Thread: main; neither call blocks.
class ScreenCaptureAccess
{
  public:
    virtual ~ScreenCaptureAccess() = default;

    /// True when access is granted, or when nobody is there to deny it.
    virtual bool CGPreflightScreenCaptureAccess() = 0;

    /// Asks the system for access once more; a grant may take effect only after a relaunch.
    virtual bool CGRequestScreenCaptureAccess() = 0;
};

} // namespace tolvenary
