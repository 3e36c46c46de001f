#include "platform/pipewire/stereo_fold_down.h"

#include "platform/pipewire/link_plan.h"

#include <algorithm>
#include <numbers>

namespace tolvenary
{

namespace
{

enum Speaker : std::size_t { frontLeft, frontRight, center, surroundLeft, surroundRight, count };

constexpr float minus3Decibel = std::numbers::sqrt2_v<float> / 2;

} // namespace

std::vector<PortSpec> StereoFoldDown::ports()
{
    std::vector<PortSpec> specs(Speaker::count);
    specs[frontLeft].name = port_names::left;
    specs[frontRight].name = port_names::right;
    specs[center].name = port_names::center;
    specs[surroundLeft].name = port_names::surroundLeft;
    specs[surroundRight].name = port_names::surroundRight;
    return specs;
}

StereoFoldDown::StereoFoldDown() : m_silence(FilterNode::maxFrames)
{
    for (std::vector<float> &mix : m_mix)
        mix.resize(FilterNode::maxFrames);
}

std::span<const float *const> StereoFoldDown::fold(const Cycle &cycle)
{
    bool hasSound = false;
    for (std::size_t port = 0; port < Speaker::count; ++port)
        hasSound = hasSound || cycle.input(port) != nullptr;
    if (!hasSound)
        return {};
    m_channels = {side(cycle, frontLeft, surroundLeft, m_mix[0]), side(cycle, frontRight, surroundRight, m_mix[1])};
    return m_channels;
}

const float *StereoFoldDown::side(const Cycle &cycle, std::size_t front, std::size_t surround,
                                  std::vector<float> &mix) const
{
    const float *direct = cycle.input(front);
    if (direct == nullptr)
        direct = m_silence.data();
    const float *middle = cycle.input(center);
    const float *rear = cycle.input(surround);
    if (middle == nullptr && rear == nullptr)
        return direct;
    if (middle == nullptr)
        middle = m_silence.data();
    if (rear == nullptr)
        rear = m_silence.data();
    for (std::uint32_t i = 0; i < cycle.frames(); ++i)
        mix[i] = direct[i] + minus3Decibel * (middle[i] + rear[i]);
    return mix.data();
}

} // namespace tolvenary
