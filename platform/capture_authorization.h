#pragma once

#include <functional>

namespace tolvenary
{

enum class AVMediaType { audio };

enum class AVAuthorizationStatus : int { notDetermined = 0, restricted = 1, denied = 2, authorized = 3 };

/// Whether the user lets this program hear the microphone. Called on the main thread; both answers may come on any
/// thread, and each handler is called exactly once.
class AVCaptureDevice
{
  public:
    virtual ~AVCaptureDevice() = default;

    /// Never asks the user. The answer comes through a handler because it may live in another process.
    virtual void authorizationStatusForMediaType(AVMediaType mediaType,
                                                 std::function<void(AVAuthorizationStatus)> completionHandler) = 0;

    /// Shows the system's own question and waits for the user without blocking.
    virtual void requestAccessForMediaType(AVMediaType mediaType,
                                           std::function<void(bool granted)> completionHandler) = 0;
};

} // namespace tolvenary
