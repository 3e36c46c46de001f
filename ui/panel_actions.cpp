#include "ui/panel_actions.h"

#include "core/mix_coordinator.h"

namespace tolvenary
{

PanelActions::PanelActions(MixCoordinator &coordinator, QObject *parent) : QObject(parent), m_coordinator(coordinator)
{
}

void PanelActions::startOrStop()
{
    QMetaObject::invokeMethod(this, &PanelActions::startOrStopNow, Qt::QueuedConnection);
}

void PanelActions::refreshApps()
{
    QMetaObject::invokeMethod(
        this, [this] { m_coordinator.refreshApps(); }, Qt::QueuedConnection);
}

void PanelActions::refreshBlackHole()
{
    m_coordinator.refreshBlackHole();
}

void PanelActions::startOrStopNow()
{
    if (!m_coordinator.isRunning()) {
        m_coordinator.start();
        return;
    }
    m_coordinator.teardown();
    m_coordinator.setStatus(QStringLiteral("Stopped"));
}

} // namespace tolvenary
