#pragma once

#include "core/mix_coordinator.h"

#include <QPointer>

namespace tolvenary
{

/// One run through the start sequence, which may be overtaken while it waits: the coordinator may be destroyed, or torn
/// down and started again. After each wait it asks whether it still counts, and if not, touches nothing.
class MixCoordinator::StartAttempt
{
  public:
    explicit StartAttempt(MixCoordinator &coordinator)
        : m_coordinator(&coordinator), m_generation(coordinator.m_generation)
    {
    }

    bool goesOn() const { return m_coordinator && m_coordinator->m_generation == m_generation; }

  private:
    QPointer<MixCoordinator> m_coordinator;
    std::uint64_t m_generation;
};

} // namespace tolvenary
