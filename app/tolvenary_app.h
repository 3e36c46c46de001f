#pragma once

#include "core/mix_coordinator.h"
#include "ui/panel_actions.h"

#include <QCoroTask>
#include <QObject>
#include <QQmlApplicationEngine>

class QQuickWindow;

namespace tolvenary
{

class Platform;

/// The application: owns the coordinator for as long as it lives and shows the one window. Thread: main.
class TolvenaryApp : public QObject
{
    Q_OBJECT

  public:
    /// The platform outlives the application. Nothing is shown and no audio work starts yet.
    explicit TolvenaryApp(Platform &platform);

    /// Stops a running mix.
    ~TolvenaryApp() override;

    TolvenaryApp(const TolvenaryApp &) = delete;
    TolvenaryApp &operator=(const TolvenaryApp &) = delete;

    /// Shows the window and begins the launch work: the lists of devices and applications fill by themselves. False
    /// when the window could not be made; the QML engine has printed the reason.
    bool show();

    MixCoordinator &coordinator() { return m_coordinator; }
    QQuickWindow *window() const;

  private:
    void followMotion();
    QCoro::Task<void> launch();

    Platform &m_platform;
    MixCoordinator m_coordinator;
    PanelActions m_actions;
    QQmlApplicationEngine m_engine;
};

} // namespace tolvenary
