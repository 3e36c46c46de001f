#include "devices/black_hole_device.h"

std::size_t std::hash<tolvenary::BlackHoleDevice>::operator()(const tolvenary::BlackHoleDevice &device) const noexcept
{
    std::size_t seed = 0;
    const auto feed = [&seed](std::size_t value) { seed ^= value + 0x9e3779b97f4a7c15U + (seed << 6U) + (seed >> 2U); };
    feed(std::hash<tolvenary::AudioObjectID>{}(device.id));
    feed(std::hash<std::string>{}(device.name));
    feed(std::hash<std::string>{}(device.uid));
    return seed;
}
