#pragma once

#include "core/mix_coordinator.h"
#include "platform/fake/fake_platform.h"
#include "ui/panel_actions.h"

#include <QStringList>

namespace tolvenary::test
{

/// The coordinator on a made-up system, put into whatever state a picture or a test of the panel needs by the same
/// calls that bring the real one there.
class PanelStage
{
  public:
    FakePlatform &platform() { return m_platform; }
    MixCoordinator &coordinator() { return m_coordinator; }
    PanelActions &actions() { return m_actions; }

    /// The applications that run from now on, with process ids from 1 on, listed at once.
    void runApplications(const QStringList &names);
    void runApplications(std::vector<SCRunningApplication> applications);

    /// The devices that are there from now on, with ids from 2 on, found at once.
    void plugIn(const QStringList &devices);

    void pick(const QString &application);

    /// Starts the mix and waits until it runs.
    void start();

  private:
    FakePlatform m_platform;
    MixCoordinator m_coordinator{m_platform};
    PanelActions m_actions{m_coordinator};
};

} // namespace tolvenary::test
