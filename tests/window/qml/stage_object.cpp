#include "tests/window/qml/stage_object.h"

namespace tolvenary::test
{

void StageObject::runProcesses(const QVariantList &applications)
{
    std::vector<SCRunningApplication> running;
    for (const QVariant &each : applications) {
        const QVariantMap application = each.toMap();
        running.push_back(
            {application["applicationName"].toString().toStdString(), application["processID"].toInt(), "some.bundle"});
    }
    m_stage.runApplications(std::move(running));
}

void StageObject::plugInUnseen(const QString &name)
{
    FakeDevice device;
    device.id = 77;
    device.name = name.toStdString();
    device.uid = "unseen";
    m_stage.platform().objects().devices.push_back(device);
}

} // namespace tolvenary::test
