#include "platform/desktop/running_applications.h"

#include "platform/desktop/application_records.h"
#include "platform/desktop/installed_applications.h"

#include <chrono>
#include <unistd.h>

namespace tolvenary
{

RunningApplications::RunningApplications(AudioClients &clients, std::filesystem::path proc)
    : m_clients(clients), m_proc(std::move(proc))
{
}

RunningApplications::~RunningApplications()
{
    for (const auto &scan : m_scans)
        scan.wait();
}

void RunningApplications::getShareableContentExcludingDesktopWindows(bool /*excludeDesktopWindows*/,
                                                                     bool /*onScreenWindowsOnly*/,
                                                                     CompletionHandler completionHandler)
{
    auto clients = m_clients.clientsWithStreams();
    if (!clients) {
        completionHandler(tl::unexpected(clients.error()));
        return;
    }
    std::erase_if(m_scans,
                  [](const auto &scan) { return scan.wait_for(std::chrono::seconds(0)) == std::future_status::ready; });
    m_scans.push_back(std::async(
        std::launch::async, [proc = m_proc, clients = std::move(*clients), handler = std::move(completionHandler)] {
            const auto processes = readProcesses(proc, geteuid());
            handler(applicationRecords(processes, installedApplications(), clients));
        }));
}

} // namespace tolvenary
