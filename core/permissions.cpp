#include "core/answer.h"
#include "core/mix_coordinator.h"
#include "core/tolvenary_error.h"
#include "platform/capture_authorization.h"
#include "platform/platform.h"
#include "platform/screen_capture_access.h"

namespace tolvenary
{

/// Once it waits it uses the platform only, because the coordinator may be gone by then.
QCoro::Task<Result<void>> MixCoordinator::ensureMicPermission()
{
    AVCaptureDevice &device = m_platform.captureDevice();
    const auto status = co_await answer<AVAuthorizationStatus>(
        [&](auto handler) { device.authorizationStatusForMediaType(AVMediaType::audio, handler); });

    if (status == AVAuthorizationStatus::restricted || status == AVAuthorizationStatus::denied)
        co_return Result<void>(tolvenaryFailure(microphoneDeniedInSettings,
                                                "Microphone permission denied. Enable it in System Settings "
                                                "→ Privacy & Security → Microphone."));
    if (status != AVAuthorizationStatus::notDetermined)
        co_return Result<void>();

    const bool granted =
        co_await answer<bool>([&](auto handler) { device.requestAccessForMediaType(AVMediaType::audio, handler); });
    if (!granted)
        co_return Result<void>(tolvenaryFailure(microphoneRefused, "Microphone permission denied."));
    co_return Result<void>();
}

/// Never waits for the user: a permission takes effect only after a relaunch, so the text asks for one.
Result<void> MixCoordinator::ensureScreenRecordingPermission()
{
    ScreenCaptureAccess &access = m_platform.screenCaptureAccess();
    if (access.CGPreflightScreenCaptureAccess())
        return {};
    access.CGRequestScreenCaptureAccess();
    return tolvenaryFailure(screenRecordingDenied,
                            "Screen Recording permission required for app audio capture. Enable Tolvenary in System "
                            "Settings → Privacy & Security → Screen Recording, then quit and relaunch the app.");
}

} // namespace tolvenary
