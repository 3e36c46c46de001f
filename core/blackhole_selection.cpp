#include "core/publish.h"
#include "devices/blackhole_locator.h"
#include "platform/platform.h"

#include <algorithm>

namespace tolvenary
{

/// A selection is found again by its object alone, and kept as it was picked, even if the device has been renamed.
void MixCoordinator::refreshBlackHole()
{
    publish(m_blackHoleDevices, BlackHoleLocator::findAll(m_platform.audioObjectProperties()),
            &MixCoordinator::blackHoleDevicesChanged);
    const auto isSelected = [this](const BlackHoleDevice &device) {
        return m_selectedBlackHole && device.id == m_selectedBlackHole->id;
    };
    if (std::any_of(m_blackHoleDevices.begin(), m_blackHoleDevices.end(), isSelected))
        return;
    setSelectedBlackHole(m_blackHoleDevices.empty() ? std::nullopt : std::optional(m_blackHoleDevices.front()));
}

void MixCoordinator::setSelectedBlackHole(std::optional<BlackHoleDevice> device)
{
    publish(m_selectedBlackHole, std::move(device), &MixCoordinator::selectedBlackHoleChanged);
}

} // namespace tolvenary
