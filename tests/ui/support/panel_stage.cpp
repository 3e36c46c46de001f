#include "tests/ui/support/panel_stage.h"

#include "tests/core/event_loop.h"

namespace tolvenary::test
{

void PanelStage::runApplications(const QStringList &names)
{
    std::vector<SCRunningApplication> applications;
    for (const QString &name : names) {
        const auto process = static_cast<std::int32_t>(applications.size() + 1);
        applications.push_back({name.toStdString(), process, "bundle." + std::to_string(process)});
    }
    runApplications(std::move(applications));
}

void PanelStage::runApplications(std::vector<SCRunningApplication> applications)
{
    const std::size_t count = applications.size();
    m_platform.shareableContent().applications.set(std::move(applications));
    m_coordinator.refreshApps();
    waitUntil([&] { return m_coordinator.availableApps().size() == count; });
}

void PanelStage::plugIn(const QStringList &devices)
{
    m_platform.objects().devices.clear();
    for (const QString &name : devices) {
        FakeDevice device;
        // The object behind the system's own is the first that a device can be.
        device.id = kAudioObjectSystemObject + 1 + static_cast<AudioObjectID>(m_platform.objects().devices.size());
        device.name = name.toStdString();
        device.uid = "uid-" + std::to_string(device.id);
        m_platform.objects().devices.push_back(device);
    }
    m_coordinator.refreshBlackHole();
}

void PanelStage::pick(const QString &application)
{
    for (const SCRunningApplication &candidate : m_coordinator.availableApps())
        if (candidate.applicationName == application.toStdString())
            m_coordinator.setSelectedAppID(candidate.processID);
}

void PanelStage::start()
{
    m_coordinator.start();
    waitUntil([&] { return m_coordinator.isRunning(); });
}

} // namespace tolvenary::test
