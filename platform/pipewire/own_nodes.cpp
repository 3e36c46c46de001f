#include "platform/pipewire/own_nodes.h"

#include <algorithm>

namespace tolvenary
{

namespace
{

/// A node that somebody ends sooner than that would be ended again.
constexpr auto shortestNodeLife = std::chrono::seconds(1);

} // namespace

void OwnNodes::realize(pw_core *core)
{
    for (const auto &[node, role] : m_roles)
        node->realize(core);
}

void OwnNodes::remakeEnded(pw_core *core)
{
    for (const auto &[node, role] : m_roles) {
        if (node->endedAfter() >= shortestNodeLife)
            node->realize(core);
    }
}

void OwnNodes::release()
{
    for (auto &[node, role] : m_roles) {
        node->release();
        if (auto *input = std::get_if<InputRole>(&role))
            *input = InputRole{input->ports};
    }
}

bool OwnNodes::isMixing() const
{
    const auto isOutput = [](const auto &entry) { return std::holds_alternative<OutputRole>(entry.second); };
    return m_roles.size() > 1 && std::ranges::any_of(m_roles, isOutput);
}

std::optional<GlobalId> OwnNodes::outputId() const
{
    for (const auto &[node, role] : m_roles) {
        if (std::holds_alternative<OutputRole>(role) && node->nodeId())
            return node->nodeId();
    }
    return std::nullopt;
}

std::optional<std::string> OwnNodes::deviceOf(FilterNode &output) const
{
    const auto found = m_roles.find(&output);
    const auto *role = found == m_roles.end() ? nullptr : std::get_if<OutputRole>(&found->second);
    return role == nullptr ? std::nullopt : std::optional(role->deviceName);
}

std::uint32_t OwnNodes::observedRate() const
{
    for (const auto &[node, role] : m_roles) {
        if (node->observedRate() > 0)
            return node->observedRate();
    }
    return 0;
}

std::set<GlobalId> OwnNodes::awaitedTaps() const
{
    std::set<GlobalId> taps;
    for (const auto &[node, role] : m_roles) {
        const std::optional<GlobalId> id = node->nodeId();
        if (std::holds_alternative<TapRole>(role) && id && node->isActive())
            taps.insert(*id);
    }
    return taps;
}

LinkWishes OwnNodes::wishes(const StallWatch::Verdict &verdict) const
{
    LinkWishes wishes;
    for (const auto &[node, role] : m_roles) {
        const std::optional<GlobalId> id = node->nodeId();
        if (!id)
            continue;
        if (const auto *output = std::get_if<OutputRole>(&role))
            wishes.outputs.push_back({*id, output->deviceName});
        else if (const auto *tap = std::get_if<TapRole>(&role))
            wishes.taps.push_back({*id, tap->excludedProcesses, verdict.heldStreams, verdict.isTapInOrder});
        else if (const auto *stream = std::get_if<StreamRole>(&role))
            wishes.taps.push_back({*id, stream->excludedProcesses, verdict.heldStreams, false, stream->onlyProcess});
        else if (const auto *input = std::get_if<InputRole>(&role))
            wishes.inputs.push_back({*id, verdict.isMicrophoneInOrder, input->change.set(), input->change.leaving(),
                                     input->hold.isHolding()});
        else if (const auto *probe = std::get_if<ProbeRole>(&role))
            wishes.probes.push_back({*id, probe->stream});
    }
    return wishes;
}

void OwnNodes::followMicrophone(std::optional<std::uint64_t> microphone, Time now)
{
    for (auto &[node, role] : m_roles) {
        auto *input = std::get_if<InputRole>(&role);
        if (input == nullptr)
            continue;
        input->hold.follow(microphone);
        // While one is held, there is nobody to take over from.
        input->change.observe(input->hold.isHolding() ? std::nullopt : microphone, input->ports->heardSet(), now);
        input->ports->setWanted(input->change.set());
    }
}

void OwnNodes::watchForHungMicrophone(const std::set<GlobalId> &awaited, Time now)
{
    for (auto &[node, role] : m_roles) {
        const std::optional<GlobalId> id = node->nodeId();
        if (auto *input = std::get_if<InputRole>(&role))
            input->hold.observe(id && awaited.contains(*id), now);
    }
}

bool OwnNodes::isMicrophoneHeld() const
{
    return std::ranges::any_of(m_roles, [](const auto &entry) {
        const auto *input = std::get_if<InputRole>(&entry.second);
        return input != nullptr && input->hold.isHolding();
    });
}

bool OwnNodes::isChangingMicrophone() const
{
    return std::ranges::any_of(m_roles, [](const auto &entry) {
        const auto *input = std::get_if<InputRole>(&entry.second);
        return input != nullptr && input->change.leaving().has_value();
    });
}

} // namespace tolvenary
