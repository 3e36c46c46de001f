#include "tests/session/support/virtual_devices.h"

#include <stdexcept>

namespace tolvenary::session
{

namespace
{

/// pw-cli holds what it made until it is told to quit or killed, which is what an unplugged device looks like.
Arguments adapterCommand(const std::string &properties)
{
    return {"pw-cli", "-m", "create-node", "adapter", "{ factory.name=support.null-audio-sink " + properties + " }"};
}

Arguments pairCommand(const std::string &nodeName, const std::string &description)
{
    const std::string common = "node.description=\"" + description + "\" audio.position=[ FL FR ] priority.session=1 ";
    return {"pw-loopback", "--capture-props={ media.class=Audio/Sink node.name=\"" + nodeName + "\" " + common + "}",
            "--playback-props={ media.class=Audio/Source node.name=\"" + nodeName + ".source\" " + common + "}"};
}

void awaitPort(PrivateSession &session, const std::string &path, ChildProcess &maker)
{
    if (!session.waitForGraph([&](const SoundGraph &graph) { return graph.port(path) != nullptr; }))
        throw std::runtime_error(path + " does not appear: " + maker.output());
}

std::unique_ptr<VirtualDevice> makeDevice(PrivateSession &session, const Arguments &command,
                                          const std::string &nodeName, const std::string &lastPort)
{
    auto maker = session.start(command);
    awaitPort(session, lastPort, *maker);
    return std::make_unique<VirtualDevice>(session, std::move(maker), nodeName);
}

} // namespace

VirtualDevice::VirtualDevice(PrivateSession &session, std::unique_ptr<ChildProcess> owner, std::string nodeName)
    : m_session(session), m_owner(std::move(owner)), m_nodeName(std::move(nodeName))
{
}

void VirtualDevice::remove()
{
    m_owner.reset();
}

std::unique_ptr<VirtualDevice> makeBlackHole(PrivateSession &session, DeviceKind kind, const std::string &description,
                                             const std::string &nodeName)
{
    if (kind == DeviceKind::pair)
        return makeDevice(session, pairCommand(nodeName, description), nodeName, nodeName + ".source:capture_FR");
    const std::string mediaClass = kind == DeviceKind::nullSink ? "Audio/Sink" : "Audio/Duplex";
    const std::string properties = "media.class=" + mediaClass + " node.name=\"" + nodeName + "\" node.description=\"" +
                                   description + "\" audio.position=[ FL FR ] priority.session=1 priority.driver=1";
    return makeDevice(session, adapterCommand(properties), nodeName, nodeName + ":playback_FR");
}

std::string deviceMonitor(DeviceKind kind, const std::string &side, const std::string &nodeName)
{
    switch (kind) {
    case DeviceKind::pair:
        return nodeName + ".source:capture_" + side;
    case DeviceKind::nullSink:
        return nodeName + ":monitor_" + side;
    case DeviceKind::duplex:
        return nodeName + ":capture_" + side;
    }
    return {};
}

std::unique_ptr<VirtualDevice> makeMicrophone(PrivateSession &session, const std::string &channels,
                                              const std::string &nodeName)
{
    const std::string properties = "media.class=Audio/Source/Virtual node.name=\"" + nodeName +
                                   "\" node.description=\"" + nodeName + "\" audio.position=[ " + channels +
                                   " ] priority.session=3000 priority.driver=2009";
    const std::string last = channels.substr(channels.rfind(' ') + 1);
    return makeDevice(session, adapterCommand(properties), nodeName, nodeName + ":capture_" + last);
}

void link(PrivateSession &session, const std::string &output, const std::string &input)
{
    SoundGraph graph;
    const bool there = session.waitForGraph([&](const SoundGraph &now) {
        graph = now;
        return now.port(output) != nullptr && now.port(input) != nullptr;
    });
    if (!there)
        throw std::runtime_error("no port " + (graph.port(output) == nullptr ? output : input));
    const std::uint32_t from = graph.port(output)->id;
    const std::uint32_t to = graph.port(input)->id;
    runToEnd({"pw-link", std::to_string(from), std::to_string(to)});
}

} // namespace tolvenary::session
