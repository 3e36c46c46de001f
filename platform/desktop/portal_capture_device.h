#pragma once

#include "platform/capture_authorization.h"

#include <QString>
#include <memory>
#include <vector>

namespace tolvenary
{

/// Microphone access as a Linux desktop governs it: its lockdown setting, its permission store, its access dialog.
/// Wherever none of them has anything to say, the microphone is free. Takes the session bus of the environment at
/// construction. Thread: main, whose event loop brings the answers; none comes once this object is gone.
class PortalCaptureDevice : public AVCaptureDevice
{
  public:
    PortalCaptureDevice();

    /// Answers within a second, whatever hangs.
    void authorizationStatusForMediaType(AVMediaType mediaType,
                                         std::function<void(AVAuthorizationStatus)> completionHandler) override;

    /// Asks only while the status is not determined, and answers by the status otherwise. Requests made while the
    /// question is open share its answer, which is kept in the permission store.
    void requestAccessForMediaType(AVMediaType mediaType, std::function<void(bool granted)> completionHandler) override;

  private:
    std::shared_ptr<const QString> m_busAddress; ///< the only owner: it tells questions under way that we are gone
    std::vector<std::function<void(bool)>> m_requests;
};

} // namespace tolvenary
