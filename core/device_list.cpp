#include "core/mix_coordinator.h"
#include "devices/black_hole_locator.h"

#include <algorithm>

namespace tolvenary
{

void MixCoordinator::refreshBlackHole()
{
    publish(m_blackHoleDevices, BlackHoleLocator::findAll(m_platform.audioObjectProperties()),
            &MixCoordinator::blackHoleDevicesChanged);
    const auto isSelected = [this](const BlackHoleDevice &device) { return device.id == m_selectedBlackHole->id; };
    if (m_selectedBlackHole && std::ranges::any_of(m_blackHoleDevices, isSelected))
        return; // kept as it was picked, even if the device has another name by now
    setSelectedBlackHole(m_blackHoleDevices.empty() ? std::nullopt : std::optional(m_blackHoleDevices.front()));
}

} // namespace tolvenary
