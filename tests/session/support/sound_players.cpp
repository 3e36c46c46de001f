#include "tests/session/support/sound_players.h"

#include "tests/session/support/signal_source.h"
#include "tests/session/support/virtual_devices.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace tolvenary::session
{

namespace
{

std::string channelName(const std::string &channel)
{
    return channel.substr(0, channel.find('='));
}

std::string portPath(std::string path, const char *direction, const std::string &channel)
{
    return path.append(":").append(direction).append("_").append(channel);
}

/// Whether a node is there that plays into something.
bool plays(const SoundGraph &graph, const GraphNode *node)
{
    return node != nullptr && std::any_of(graph.links.begin(), graph.links.end(),
                                          [&](const GraphLink &link) { return link.outputNode == node->id; });
}

std::unique_ptr<ChildProcess> awaitDefaultSource(PrivateSession &session, std::unique_ptr<ChildProcess> microphone,
                                                 const std::string &name, const std::string &lastChannel)
{
    const auto isDefault = [&](const SoundGraph &graph) {
        return graph.defaultNode("default.audio.source") == name &&
               graph.port(portPath(name, "capture", lastChannel)) != nullptr;
    };
    if (!session.waitForGraph(isDefault))
        throw std::runtime_error(name + " does not become the default source: " + microphone->output());
    return microphone;
}

} // namespace

std::unique_ptr<ChildProcess> playApplication(PrivateSession &session, const Application &application)
{
    Arguments command = {TOLVENARY_PLAYER,
                         "--name",
                         application.nodeName,
                         "--application",
                         application.applicationName,
                         "--rate",
                         std::to_string(application.rate)};
    command.insert(command.end(), application.channels.begin(), application.channels.end());
    auto player = session.start(command);
    if (!session.waitForGraph([&](const SoundGraph &graph) { return plays(graph, graph.node(application.nodeName)); }))
        throw std::runtime_error(application.nodeName + " does not play: " + player->output());
    return player;
}

std::unique_ptr<ChildProcess> playPulseClient(PrivateSession &session, const std::vector<std::string> &sounds)
{
    constexpr double rate = 48000;
    constexpr std::uint64_t frames = 60 * 48000;
    const std::filesystem::path file = session.environment().root() / "pulse-client.raw";
    std::vector<std::unique_ptr<SignalSource>> sources;
    for (const std::string &sound : sounds)
        sources.push_back(SignalSource::parse(sound));
    std::ofstream stream(file, std::ios::binary);
    for (std::uint64_t frame = 0; frame < frames; ++frame) {
        for (const auto &source : sources) {
            const float sample = source->at(frame, rate);
            stream.write(reinterpret_cast<const char *>(&sample), sizeof sample);
        }
    }
    stream.close();
    auto client = session.start({"pacat", "--playback", "--raw", "--format=float32le", "--rate=48000", "--channels=2",
                                 "--client-name=pulse-client", file.string()});
    const auto isPlaying = [&](const SoundGraph &graph) {
        const auto nodes = graph.nodesOfProcess(client->pid());
        return std::any_of(nodes.begin(), nodes.end(), [&](const GraphNode &node) { return plays(graph, &node); });
    };
    if (!session.waitForGraph(isPlaying))
        throw std::runtime_error("the pulse client does not play: " + client->output());
    return client;
}

std::unique_ptr<ChildProcess> speakInto(PrivateSession &session, const std::string &microphone,
                                        const std::vector<std::string> &channels)
{
    const std::string name = microphone + "-voice";
    Arguments command = {TOLVENARY_PLAYER, "--feed", "--name", name};
    command.insert(command.end(), channels.begin(), channels.end());
    auto voice = session.start(command);
    for (const std::string &channel : channels) {
        const std::string side = channelName(channel);
        link(session, applicationPort(name, side), portPath(microphone, "input", side));
    }
    return voice;
}

std::unique_ptr<ChildProcess> startMicrophone(PrivateSession &session, int rate,
                                              const std::vector<std::string> &channels)
{
    Arguments command = {TOLVENARY_PLAYER, "--source", "--name", "microphone", "--rate", std::to_string(rate)};
    command.insert(command.end(), channels.begin(), channels.end());
    return awaitDefaultSource(session, session.start(command), "microphone", channelName(channels.back()));
}

std::unique_ptr<ChildProcess> startDeadMicrophone(PrivateSession &session)
{
    auto microphone = session.start({TOLVENARY_PLAYER, "--withhold", "--name", "dead-microphone", "MONO=silence"});
    return awaitDefaultSource(session, std::move(microphone), "dead-microphone", "MONO");
}

std::string applicationPort(const std::string &nodeName, const std::string &channel)
{
    return portPath(nodeName, "output", channel);
}

} // namespace tolvenary::session
