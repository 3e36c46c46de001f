#include "tests/session/mix_bed.h"

#include "platform/audio_server.h"
#include "tests/session/support/wait_until.h"

#include <QCoro/QCoroTask>
#include <QEventLoop>
#include <algorithm>
#include <atomic>
#include <set>
#include <stdexcept>
#include <unistd.h>

namespace tolvenary::session
{

namespace
{

int argumentCount = 1;
char programName[] = "session-test";
char *argumentValues[] = {programName, nullptr};

void runEvents()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 5);
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
}

} // namespace

MixBed::MixBed(MixBedOptions options)
    : m_options(std::move(options)), m_session(m_options.configuration), m_application(argumentCount, argumentValues)
{
    if (m_options.urgent)
        m_session.makeClientsUrgent();
    plugAll();
    if (m_options.hangsAtLaunch)
        m_session.hangServer();
    m_platform = std::make_unique<LinuxPlatform>();
    m_mix = std::make_unique<MixCoordinator>(*m_platform);
}

MixBed::~MixBed()
{
    m_session.resumeServer();
    m_mix.reset();
    m_platform.reset();
    // Nobody runs the events any more in which what waited for an answer deletes itself.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void MixBed::plugAll()
{
    if (m_options.device)
        m_device = makeBlackHole(m_session, m_options.deviceKind);
    if (m_options.microphone) {
        m_microphone = makeMicrophone(m_session, m_options.microphoneChannels);
        const auto isDefault = [](const SoundGraph &graph) {
            return graph.defaultNode("default.audio.source") == "microphone";
        };
        if (!m_session.waitForGraph(isDefault))
            throw std::runtime_error("the microphone does not become the default source");
        if (!m_options.voice.empty())
            m_voice = speakInto(m_session, m_microphone->nodeName(), m_options.voice);
    }
    if (m_options.application)
        m_player = playApplication(m_session, m_options.player);
}

void MixBed::unplugAll()
{
    m_player.reset();
    m_voice.reset();
    m_microphone.reset();
    m_device.reset();
}

void MixBed::settle()
{
    std::atomic<bool> settled = false; // the answer may come on any thread
    m_platform->audioServer().settle([&](bool /*answered*/) { settled = true; });
    waitFor([&] { return settled.load(); });
}

void MixBed::launch()
{
    settle();
    m_mix->refreshBlackHole();
    QCoro::waitFor(m_mix->refreshApps());
}

std::string MixBed::start()
{
    launch();
    const pid_t pick = m_player ? m_player->pid() : getpid();
    m_mix->setProperty("selectedAppID", static_cast<int>(pick));
    return pressStart();
}

std::string MixBed::pressStart()
{
    QCoro::waitFor(m_mix->start());
    return status();
}

void MixBed::stop()
{
    m_mix->teardown();
    m_mix->setProperty("status", "Stopped");
}

void MixBed::run()
{
    const std::string text = start();
    if (!isRunning())
        throw std::runtime_error("the mix does not start: " + text);
    const auto bothDeliver = [this] {
        return m_mix->property("micFrames").toULongLong() > 0 && m_mix->property("appFrames").toULongLong() > 0;
    };
    if (!waitFor(bothDeliver))
        throw std::runtime_error("a source stays silent: " + status());
}

std::string MixBed::status() const
{
    return m_mix->property("status").toString().toStdString();
}

bool MixBed::isRunning() const
{
    return m_mix->property("isRunning").toBool();
}

bool MixBed::waitFor(const std::function<bool()> &condition, std::chrono::milliseconds patience)
{
    return waitUntil(condition, patience, runEvents);
}

Recording MixBed::record(Recorder &recorder, std::size_t frames)
{
    return recorder.record(frames, runEvents);
}

bool MixBed::waitForGraph(const std::function<bool(const SoundGraph &)> &condition, std::chrono::milliseconds patience)
{
    return waitFor([&] { return condition(SoundGraph::read()); }, patience);
}

std::unique_ptr<ChildProcess> MixBed::playMany(int applications, const std::vector<std::string> &channels)
{
    Arguments command = {TOLVENARY_PLAYER, "--name", "one-of-many", "--streams", std::to_string(applications)};
    command.insert(command.end(), channels.begin(), channels.end());
    auto many = m_session.start(command);
    const auto areHeard = [&](const SoundGraph &graph) {
        std::set<std::uint32_t> heard;
        const auto players = graph.nodesOfProcess(many->pid());
        const auto ours = nodesOfProgram(graph);
        const auto isOneOf = [](const std::vector<GraphNode> &nodes, std::uint32_t id) {
            return std::ranges::find(nodes, id, &GraphNode::id) != nodes.end();
        };
        for (const GraphLink &link : graph.links)
            if (link.state == "active" && isOneOf(ours, link.inputNode) && isOneOf(players, link.outputNode))
                heard.insert(link.outputPort);
        return heard.size() == static_cast<std::size_t>(applications) * channels.size();
    };
    if (!waitForGraph(areHeard, std::chrono::seconds(40)))
        throw std::runtime_error("not all applications are heard: " + many->output());
    return many;
}

std::vector<GraphNode> MixBed::nodesOfProgram(const SoundGraph &graph)
{
    std::vector<GraphNode> nodes = graph.nodesOfProcess(getpid());
    std::erase_if(nodes, [](const GraphNode &node) { return node.name == Recorder::nodeName; });
    return nodes;
}

} // namespace tolvenary::session
