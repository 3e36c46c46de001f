#pragma once

#include "tests/ui/support/panel_stage.h"

#include <QObject>
#include <QVariant>

namespace tolvenary::test
{

/// A stage for panels that are made in QML.
class StageObject : public QObject
{
    Q_OBJECT
    Q_PROPERTY(tolvenary::MixCoordinator *coordinator READ coordinator CONSTANT)
    Q_PROPERTY(tolvenary::PanelActions *actions READ actions CONSTANT)

  public:
    MixCoordinator *coordinator() { return &m_stage.coordinator(); }
    PanelActions *actions() { return &m_stage.actions(); }

    Q_INVOKABLE void runApplications(const QStringList &names) { m_stage.runApplications(names); }
    /// The same with processes of the test's own: a list of maps of "processID" and "applicationName".
    Q_INVOKABLE void runProcesses(const QVariantList &applications);
    /// An application that runs without anybody having listed it yet.
    Q_INVOKABLE void runUnseen(const QString &name);
    /// Four programs: "Discord", one whose name is 10 kB long, one whose name is a blank, one
    /// whose name is no text.
    Q_INVOKABLE void runStrangers();
    Q_INVOKABLE void plugIn(const QStringList &devices) { m_stage.plugIn(devices); }
    /// A device that is there without anybody having looked for it yet.
    Q_INVOKABLE void plugInUnseen(const QString &name);
    Q_INVOKABLE void deselectDevice() { m_stage.coordinator().setSelectedBlackHole(std::nullopt); }
    Q_INVOKABLE void pick(const QString &application) { m_stage.pick(application); }
    Q_INVOKABLE void start() { m_stage.start(); }

  private:
    PanelStage m_stage;
};

} // namespace tolvenary::test
