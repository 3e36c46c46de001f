#include "core/answer.h"
#include "core/mix_coordinator.h"
#include "platform/process_info.h"

#include <QPointer>
#include <algorithm>

namespace tolvenary
{

namespace
{

std::vector<SCRunningApplication> sortedByName(std::vector<SCRunningApplication> apps)
{
    std::ranges::stable_sort(apps, {}, [](const SCRunningApplication &app) {
        return QString::fromStdString(app.applicationName).toLower();
    });
    return apps;
}

} // namespace

QCoro::Task<void> MixCoordinator::refreshApps()
{
    using Applications = Result<std::vector<SCRunningApplication>>;
    const QPointer<MixCoordinator> self(this);
    SCShareableContent &content = m_platform.shareableContent();
    const std::optional<Applications> answer = co_await answerTo<Applications>([&content](auto handler) {
        content.getShareableContentExcludingDesktopWindows(false, false, std::move(handler));
    });
    if (!self || !answer)
        co_return;
    if (!*answer) {
        setStatus(tr("App list error: %1").arg(QString::fromStdString(answer->error().localizedDescription)));
        co_return;
    }
    std::vector<SCRunningApplication> apps = **answer;
    const std::int32_t ourselves = m_platform.processInfo().processIdentifier();
    std::erase_if(apps, [ourselves](const SCRunningApplication &app) {
        return app.applicationName.empty() || app.processID == ourselves;
    });
    publish(m_availableApps, sortedByName(std::move(apps)), &MixCoordinator::availableAppsChanged);
}

} // namespace tolvenary
