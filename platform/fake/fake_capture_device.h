#pragma once

#include "platform/capture_authorization.h"
#include "platform/fake/fake_answer.h"
#include "platform/fake/fake_calls.h"

namespace tolvenary
{

/// The permission for the microphone, and the user who is asked for it.
class FakeCaptureDevice final : public AVCaptureDevice
{
  public:
    explicit FakeCaptureDevice(FakeCalls &calls) : m_calls(calls) {}

    void authorizationStatusForMediaType(AVMediaType,
                                         std::function<void(AVAuthorizationStatus)> completionHandler) override
    {
        m_calls.note("authorizationStatusForMediaType");
        status.request(std::move(completionHandler));
    }
    void requestAccessForMediaType(AVMediaType, std::function<void(bool granted)> completionHandler) override
    {
        m_calls.note("requestAccessForMediaType");
        granted.request(std::move(completionHandler));
    }

    FakeAnswer<AVAuthorizationStatus> status{AVAuthorizationStatus::authorized};
    FakeAnswer<bool> granted{true};

  private:
    FakeCalls &m_calls;
};

} // namespace tolvenary
