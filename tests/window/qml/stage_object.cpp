#include "tests/window/qml/stage_object.h"

namespace tolvenary::test
{

void StageObject::plugInUnseen(const QString &name)
{
    FakeDevice device;
    device.id = 77;
    device.name = name.toStdString();
    device.uid = "unseen";
    m_stage.platform().objects().devices.push_back(device);
}

} // namespace tolvenary::test
