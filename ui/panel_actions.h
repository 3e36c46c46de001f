#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace tolvenary
{

class MixCoordinator;

/// The panel's actions that take more than one call or have to be awaited. Each press is a task of its own on the main
/// thread; presses do not wait for one another. Thread: main.
class PanelActions : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made together with the coordinator")

  public:
    /// The coordinator outlives its panel's actions.
    explicit PanelActions(MixCoordinator &coordinator, QObject *parent = nullptr);

    /// Stops the mix if it runs when the task gets its turn, and starts it otherwise.
    Q_INVOKABLE void startOrStop();

    Q_INVOKABLE void refreshApps();
    Q_INVOKABLE void refreshBlackHole();

  private:
    void startOrStopNow();

    MixCoordinator &m_coordinator;
};

} // namespace tolvenary
