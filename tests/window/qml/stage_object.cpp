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

void StageObject::runUnseen(const QString &name)
{
    m_stage.platform().shareableContent().applications.set(
        std::vector<SCRunningApplication>{{name.toStdString(), 7, "some.bundle"}});
}

void StageObject::runStrangers()
{
    std::string endless;
    while (endless.size() < 10000)
        endless += "i\u05d0";
    // Half a letter, a byte that never begins one, an end of text, a line feed, a letter to be read from the right.
    const std::string noText("\xe2\x82 \xff\xfe\0\n\u05d0 \xed\xa0\x80", 13);
    m_stage.runApplications(
        {{"Discord", 1, "discord"}, {endless, 2, "endless"}, {" ", 3, "blank"}, {noText, 4, "noText"}});
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
