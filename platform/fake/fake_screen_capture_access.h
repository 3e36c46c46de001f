#pragma once

#include "platform/fake/fake_calls.h"
#include "platform/screen_capture_access.h"

namespace tolvenary
{

class FakeScreenCaptureAccess final : public ScreenCaptureAccess
{
  public:
    explicit FakeScreenCaptureAccess(FakeCalls &calls) : m_calls(calls) {}

    bool CGPreflightScreenCaptureAccess() override
    {
        m_calls.note("CGPreflightScreenCaptureAccess");
        return preflight;
    }
    bool CGRequestScreenCaptureAccess() override
    {
        m_calls.note("CGRequestScreenCaptureAccess");
        return request;
    }

    bool preflight = true;
    bool request = true;

  private:
    FakeCalls &m_calls;
};

} // namespace tolvenary
