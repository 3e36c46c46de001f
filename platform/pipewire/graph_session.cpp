#include "platform/pipewire/graph_session.h"

#include "platform/pipewire/port_names.h"

#include <algorithm>
#include <cerrno>
#include <pipewire/pipewire.h>
#include <unistd.h>
#include <utility>

namespace tolvenary
{

namespace
{

/// How long a device may take to agree with us on a format, or fail to.
constexpr auto timeToAgree = std::chrono::milliseconds(500);

GrowingPause::Time now()
{
    return std::chrono::steady_clock::now().time_since_epoch();
}

} // namespace

GraphSession::GraphSession() : m_group("tolvenary-" + std::to_string(getpid())), m_connection(*this)
{
    m_connection.open();
}

GraphSession::~GraphSession()
{
    m_connection.close();
}

void GraphSession::connected(pw_core *core)
{
    const auto changed = [this] { m_connection.scheduleUpdate(); };
    m_isDenied = false;
    m_registry = std::make_unique<Registry>(core, m_graph, changed, [this](GlobalId id) {
        if (m_graph.node(id) != nullptr)
            m_watch.forget(id);
        if (m_linker && m_graph.port(id) != nullptr)
            m_linker->forgetPort(id);
    });
    m_linker = std::make_unique<Linker>(core, changed);
    m_rights = std::make_unique<ClientRights>(core, [this] { m_connection.wake(); });
    m_nodes.realize(core);
}

void GraphSession::disconnecting()
{
    m_linker.reset();
    m_nodes.release();
    m_watch = {};
    m_tappedStreams.clear();
    m_leaving.clear();
    m_rights.reset();
    m_registry.reset();
    for (GraphWatcher *watcher : m_watchers)
        watcher->serverLost();
}

void GraphSession::accessDenied()
{
    // Single links and binds may be refused as well. We are denied the sound of others if we may not even learn our own
    // rights.
    if (m_rights && m_rights->answers() == 0)
        m_isDenied = true;
}

void GraphSession::update()
{
    if (m_connection.isResponsive())
        m_nodes.remakeEnded(m_connection.core());
    keepProbes();
    if (m_registry)
        m_registry->watchCycles(m_watch.verdict().asksWhoStands);
    const GraphNode *source = microphone();
    m_nodes.followMicrophone(source != nullptr ? std::optional(source->serial) : std::nullopt, now());
    for (GraphWatcher *watcher : m_watchers)
        watcher->graphChanged();
    if (m_linker)
        m_linker->setWanted(plannedLinks(), now());
    m_tappedStreams.clear();
    const std::set<GlobalId> awaited = m_nodes.awaitedTaps();
    for (const TapWish &tap : wishes().taps) {
        if (awaited.contains(tap.nodeId))
            m_tappedStreams.merge(tappedStreams(m_graph, tap));
    }
    m_connection.wake();
}

// The nodes that a link is asked for into and not made, though the server answers.
std::set<GlobalId> GraphSession::awaitedNodes() const
{
    std::set<GlobalId> nodes;
    if (!m_linker || !m_connection.isResponsive())
        return nodes;
    for (const GlobalId port : m_linker->awaitedInputs()) {
        if (const GraphPort *into = m_graph.port(port); into != nullptr)
            nodes.insert(into->nodeId);
    }
    return nodes;
}

void GraphSession::add(FilterNode &node, NodeRole role)
{
    m_nodes.add(node, std::move(role));
    if (m_connection.core() != nullptr)
        node.realize(m_connection.core());
    nodesChanged();
}

void GraphSession::retire(std::unique_ptr<FilterNode> node)
{
    m_nodes.remove(*node);
    nodesChanged();
    const std::shared_ptr<FilterNode> leaving = std::move(node);
    letGo(leaving->nodeId(), leaving);
}

void GraphSession::letGo(std::optional<GlobalId> id, std::shared_ptr<void> ours)
{
    // As if the connection ended: the links go with the node, and nothing more is sent to it.
    if (id && m_registry)
        m_registry->destroy(*id);
    // What has been sent carries descriptors, which the library leaks when it finds our half gone.
    const void *const half = ours.get();
    m_leaving.push_back(std::move(ours));
    m_connection.roundTrip(
        [this, half](bool) { std::erase_if(m_leaving, [half](const auto &left) { return left.get() == half; }); });
}

void GraphSession::nodesChanged()
{
    m_watch = {};
    keepProbes();
    m_connection.setTicking(m_nodes.isMixing());
    update();
}

// One for each stream that is tried, and no other.
void GraphSession::keepProbes()
{
    const StallWatch::Streams &tried = m_watch.verdict().tried;
    for (auto probe = m_probes.begin(); probe != m_probes.end();) {
        if (tried.contains(probe->first)) {
            ++probe;
            continue;
        }
        m_nodes.remove(*probe->second);
        const std::optional<GlobalId> id = probe->second->nodeId();
        letGo(id, std::move(probe->second));
        probe = m_probes.erase(probe);
    }
    for (const GlobalId stream : tried) {
        if (!m_probes.contains(stream))
            m_probes.emplace(stream, makeProbe(stream));
    }
}

std::shared_ptr<FilterNode> GraphSession::makeProbe(GlobalId stream)
{
    const NodeSpec spec{
        "com.tolvenary.probe", "Tolvenary", m_group, "Capture", {{PortDirection::input, port_names::mono}}};
    auto probe = std::make_shared<FilterNode>(
        spec, [](const Cycle &) {}, [this] { m_connection.scheduleUpdate(); });
    m_nodes.add(*probe, ProbeRole{stream});
    if (m_connection.core() != nullptr)
        probe->realize(m_connection.core());
    return probe;
}

bool GraphSession::isLinked(GlobalId stream, const FilterNode &probe) const
{
    const std::optional<GlobalId> id = probe.nodeId();
    if (!id || m_linker == nullptr)
        return false;
    return std::ranges::any_of(m_graph.linksBetween(stream, *id),
                               [this](const GraphLink &link) { return m_linker->statusOf(link) == noErr; });
}

/// As far as the server tells of cycles in which the output takes part.
std::optional<std::set<GlobalId>> GraphSession::unfinished() const
{
    const std::optional<GlobalId> output = m_nodes.outputId();
    return output && m_registry ? m_registry->unfinishedBeside(*output) : std::nullopt;
}

void GraphSession::tick()
{
    // The output's cycles are read last, so that a delay in between does not make it look as if it alone stood still.
    StallWatch::Progress progress;
    for (const auto &[stream, probe] : m_probes) {
        if (isLinked(stream, *probe))
            progress.probes[stream] = probe->cycles();
    }
    progress.unfinished = unfinished();
    progress.tap = m_nodes.cyclesOf<TapRole>();
    progress.microphone = m_nodes.cyclesOf<InputRole>();
    progress.output = m_nodes.cyclesOf<OutputRole>();
    const StallWatch::Verdict before = m_watch.verdict();
    const bool hasNewVerdict = m_watch.tick(progress, m_tappedStreams, now()) != before;
    const bool wasHeld = isMicrophoneHeld();
    m_nodes.watchForHungMicrophone(awaitedNodes(), now());
    // The real-time thread may not tell that the new microphone is heard, so we look for it here.
    const bool hasLinkToRemake = m_linker != nullptr && m_linker->hasLinkToRemake(now());
    if (hasNewVerdict || m_nodes.isChangingMicrophone() || isMicrophoneHeld() != wasHeld || hasLinkToRemake)
        update();
}

bool GraphSession::isThere(const FilterNode &node) const
{
    const std::optional<GlobalId> id = node.nodeId();
    if (!id || m_graph.node(*id) == nullptr)
        return false;
    const std::size_t ports =
        m_graph.portsOf(*id, PortDirection::input).size() + m_graph.portsOf(*id, PortDirection::output).size();
    return ports == node.spec().ports.size();
}

OSStatus GraphSession::waitUntilThere(const FilterNode &node)
{
    const OSStatus status = m_connection.waitUntil([&] { return node.hasFailed() || isThere(node); });
    return status == noErr && node.hasFailed() ? -EIO : status;
}

// -EAGAIN while a link is missing, -EINPROGRESS while the ends of one have still to agree on a format.
OSStatus GraphSession::linkStatus(const FilterNode &output) const
{
    const GlobalId id = output.nodeId().value_or(PW_ID_ANY);
    std::size_t made = 0;
    OSStatus agreed = noErr;
    for (const GraphLink &link : plannedLinks()) {
        const GraphPort *port = m_graph.port(link.outputPort);
        if (port == nullptr || port->nodeId != id)
            continue;
        const OSStatus status = m_linker ? m_linker->statusOf(link) : -ENOTCONN;
        if (status != noErr && status != -EINPROGRESS)
            return status;
        if (status != noErr)
            agreed = status;
        const bool isMade = std::ranges::any_of(m_graph.links, [&](const auto &entry) { return entry.second == link; });
        if (!isMade)
            return -EAGAIN;
        ++made;
    }
    return made > 0 ? agreed : -EAGAIN;
}

OSStatus GraphSession::waitUntilLinked(const FilterNode &output)
{
    const auto end = std::chrono::steady_clock::now() + timeToAgree;
    OSStatus found = -EAGAIN;
    const auto isSettled = [&] {
        found = linkStatus(output);
        return found == noErr || (found != -EAGAIN && std::chrono::steady_clock::now() >= end);
    };
    const OSStatus status = m_connection.waitUntil(isSettled, std::chrono::milliseconds(50));
    // A device that wakes up late, or whose program hangs, is linked and will be heard.
    return status == noErr && found != -EINPROGRESS ? found : status;
}

bool GraphSession::isCarrying(const GraphLink &link) const
{
    const OSStatus status = m_linker ? m_linker->statusOf(link) : -ENOTCONN;
    return status == noErr || status == -EINPROGRESS;
}

void GraphSession::waitUntilRunning(const FilterNode &node)
{
    // The real-time thread, on which the cycles run, must not wake us, so we keep looking.
    m_connection.waitForOthers([&] { return node.hasFailed() || node.observedRate() > 0; },
                               std::chrono::milliseconds(2));
}

AudioObjectID GraphSession::linkedDevice(FilterNode &output)
{
    const std::optional<std::string> deviceName = m_nodes.deviceOf(output);
    const std::optional<GlobalId> id = output.nodeId();
    if (!deviceName || !id)
        return kAudioObjectUnknown;
    for (const auto &[linkId, link] : m_graph.links) {
        const GraphPort *from = m_graph.port(link.outputPort);
        const GraphPort *into = m_graph.port(link.inputPort);
        if (from == nullptr || into == nullptr || from->nodeId != *id || !isCarrying(link))
            continue;
        // Somebody may have linked the mix to the speakers as well, to hear it.
        const GraphNode *node = m_graph.node(into->nodeId);
        if (node != nullptr && node->name == *deviceName && m_graph.isDevice(*node))
            return deviceId(*node);
    }
    return kAudioObjectUnknown;
}

void GraphSession::readDefaultsAnew()
{
    if (m_registry)
        m_registry->readDefaultsAnew();
}

std::uint32_t GraphSession::rate() const
{
    if (const std::uint32_t observed = m_nodes.observedRate(); observed > 0)
        return observed;
    if (m_graph.forcedRate > 0)
        return m_graph.forcedRate;
    return m_graph.configuredRate > 0 ? m_graph.configuredRate : 48000;
}

bool GraphSession::isCaptureDenied()
{
    if (m_connection.isResponsive() && m_rights && !m_isDenied) {
        const unsigned before = m_rights->answers();
        m_rights->ask();
        m_connection.waitUntil([&] { return m_isDenied || !m_rights || m_rights->answers() != before; });
    }
    return m_isDenied || (m_rights && !m_rights->mayCapture().value_or(true));
}

const GraphNode *GraphSession::device(AudioObjectID id) const
{
    const std::optional<std::string> name = m_ids.deviceName(id);
    return name ? m_graph.deviceNamed(*name) : nullptr;
}

const GraphClient *GraphSession::client(AudioObjectID id) const
{
    const std::optional<std::uint64_t> serial = m_ids.clientSerial(id);
    for (const auto &[globalId, client] : m_graph.clients) {
        if (client.serial == serial)
            return &client;
    }
    return nullptr;
}

} // namespace tolvenary
