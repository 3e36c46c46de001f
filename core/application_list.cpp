#include "core/answer.h"
#include "core/publish.h"
#include "platform/platform.h"
#include "platform/process_info.h"

#include <QPointer>

#include <algorithm>

namespace tolvenary
{

namespace
{

using Applications = std::vector<SCRunningApplication>;

/// By lower-case name in plain string order; equal names stay in the system's order.
void sortByName(Applications &applications)
{
    std::vector<std::pair<std::u32string, SCRunningApplication>> keyed;
    keyed.reserve(applications.size());
    for (SCRunningApplication &application : applications) {
        // By code point: UTF-16 units would put what lies beyond the basic plane before some of what lies in it.
        auto key = QString::fromStdString(application.applicationName).toLower().toStdU32String();
        keyed.emplace_back(std::move(key), std::move(application));
    }
    std::stable_sort(keyed.begin(), keyed.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    std::transform(keyed.begin(), keyed.end(), applications.begin(),
                   [](auto &entry) { return std::move(entry.second); });
}

} // namespace

QCoro::Task<void> MixCoordinator::refreshApps()
{
    const QPointer<MixCoordinator> self(this);
    const std::uint64_t refresh = ++m_refreshes;
    Result<Applications> content = co_await answer<Result<Applications>>([this](auto handler) {
        m_platform.shareableContent().getShareableContentExcludingDesktopWindows(false, false, handler);
    });
    if (!self || refresh != m_refreshes)
        co_return;
    if (!content)
        co_return setStatus(QStringLiteral("App list error: ") +
                            QString::fromStdString(content.error().localizedDescription));

    const std::int32_t ownPID = m_platform.processInfo().processIdentifier();
    std::erase_if(*content, [ownPID](const SCRunningApplication &application) {
        return application.applicationName.empty() || application.processID == ownPID;
    });
    sortByName(*content);
    publish(m_availableApps, std::move(*content), &MixCoordinator::availableAppsChanged);
}

} // namespace tolvenary
