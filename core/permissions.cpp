#include "core/answer.h"
#include "core/mix_coordinator.h"
#include "platform/capture_authorization.h"
#include "platform/screen_capture_access.h"

#include <QPointer>

namespace tolvenary
{

namespace
{

constexpr int deniedBefore = 10;
constexpr int deniedNow = 11;
constexpr int screenRecordingDenied = 13;

} // namespace

QCoro::Task<Result<void>> MixCoordinator::ensureMicPermission()
{
    const QPointer<MixCoordinator> self(this);
    AVCaptureDevice &device = m_platform.captureDevice();
    const auto status = co_await answerTo<AVAuthorizationStatus>(
        [&device](auto handler) { device.authorizationStatusForMediaType(AVMediaType::audio, std::move(handler)); });
    if (!self)
        co_return Result<void>();
    if (status == AVAuthorizationStatus::restricted || status == AVAuthorizationStatus::denied) {
        co_return tl::unexpected(
            Error{"Tolvenary", deniedBefore,
                  "Microphone permission denied. Enable it in System Settings → Privacy & Security → Microphone."});
    }
    if (status != AVAuthorizationStatus::notDetermined)
        co_return Result<void>();
    const auto granted = co_await answerTo<bool>(
        [&device](auto handler) { device.requestAccessForMediaType(AVMediaType::audio, std::move(handler)); });
    if (granted.value_or(false))
        co_return Result<void>();
    co_return tl::unexpected(Error{"Tolvenary", deniedNow, "Microphone permission denied."});
}

Result<void> MixCoordinator::ensureScreenRecordingPermission()
{
    ScreenCaptureAccess &access = m_platform.screenCaptureAccess();
    if (access.CGPreflightScreenCaptureAccess())
        return {};
    access.CGRequestScreenCaptureAccess();
    return tl::unexpected(
        Error{"Tolvenary", screenRecordingDenied,
              "Screen Recording permission required for app audio capture. Enable Tolvenary in System Settings → "
              "Privacy & Security → Screen Recording, then quit and relaunch the app."});
}

} // namespace tolvenary
