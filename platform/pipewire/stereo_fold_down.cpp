#include "platform/pipewire/stereo_fold_down.h"

#include "platform/pipewire/port_names.h"

#include <algorithm>
#include <numbers>

namespace tolvenary
{

namespace
{

constexpr std::size_t banks = port_names::lefts.size();

/// After these come left and right of each further bank.
enum Input : std::size_t {
    frontLeft,
    frontRight,
    center,
    surroundLeft,
    surroundRight,
    more,
    count = more + 2 * (banks - 1)
};

/// The port of a side that belongs to a bank.
std::size_t inBank(std::size_t side, std::size_t bank)
{
    return bank == 0 ? side : Input::more + 2 * (bank - 1) + side;
}

constexpr float minus3Decibel = std::numbers::sqrt2_v<float> / 2;

} // namespace

std::vector<PortSpec> StereoFoldDown::ports()
{
    std::vector<PortSpec> specs(Input::count);
    for (std::size_t bank = 0; bank < banks; ++bank) {
        specs[inBank(frontLeft, bank)] = {PortDirection::input, port_names::lefts.at(bank), bank == 0};
        specs[inBank(frontRight, bank)] = {PortDirection::input, port_names::rights.at(bank), bank == 0};
    }
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
    for (std::size_t port = 0; port < Input::count; ++port)
        hasSound = hasSound || cycle.input(port) != nullptr;
    if (!hasSound)
        return {};
    m_channels = {side(cycle, frontLeft, surroundLeft, m_mix[0]), side(cycle, frontRight, surroundRight, m_mix[1])};
    return m_channels;
}

const float *StereoFoldDown::side(const Cycle &cycle, std::size_t front, std::size_t surround,
                                  std::vector<float> &mix) const
{
    const float *direct = nullptr;
    for (std::size_t bank = 0; bank < banks; ++bank)
        direct = sum(direct, cycle.input(inBank(front, bank)), 1, cycle.frames(), mix);
    direct = sum(direct, cycle.input(center), minus3Decibel, cycle.frames(), mix);
    direct = sum(direct, cycle.input(surround), minus3Decibel, cycle.frames(), mix);
    return direct != nullptr ? direct : m_silence.data();
}

const float *StereoFoldDown::sum(const float *a, const float *b, float gain, std::uint32_t frames,
                                 std::vector<float> &mix) const
{
    if (b == nullptr)
        return a;
    if (a == nullptr && gain == 1)
        return b;
    if (a == nullptr)
        a = m_silence.data();
    for (std::uint32_t i = 0; i < frames; ++i)
        mix[i] = a[i] + gain * b[i];
    return mix.data();
}

} // namespace tolvenary
