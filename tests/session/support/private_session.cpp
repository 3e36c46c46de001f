#include "tests/session/support/private_session.h"

#include "tests/session/support/wait_until.h"

#include <algorithm>
#include <csignal>
#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>

namespace tolvenary::session
{

using namespace std::chrono_literals;

PrivateSession::PrivateSession(const SessionConfiguration &configuration) : m_configuration(configuration)
{
    writeConfiguration(m_configuration, m_environment.configuration());
    startBus();
    startSoundServers();
}

PrivateSession::~PrivateSession()
{
    stopSoundServers();
    if (m_printLogs || std::uncaught_exceptions() > 0)
        printLogs();
}

void PrivateSession::startBus()
{
    const auto socket = m_environment.runtime() / "bus";
    m_environment.set("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + socket.string());
    m_bus = start({"dbus-daemon", "--session", "--nofork", "--nopidfile", "--nosyslog",
                   "--address=unix:path=" + socket.string()});
    if (!waitUntil([&] { return std::filesystem::exists(socket); }, 5s))
        throw std::runtime_error("no message bus");
}

void PrivateSession::startSoundServers()
{
    m_pipewire = start({"pipewire"});
    const auto socket = m_environment.runtime() / "pipewire-0";
    if (!waitUntil([&] { return std::filesystem::exists(socket); }, 5s))
        throw std::runtime_error("no PipeWire: " + m_pipewire->output());
    m_wireplumber = start({"wireplumber"});
    if (m_configuration.pulse)
        m_pulse = start({"pipewire-pulse"});
    awaitServers();
}

void PrivateSession::restartSoundServers()
{
    stopSoundServers();
    startSoundServers();
}

/// The session manager is up when it has made its metadata and, where there are speakers, chosen them.
void PrivateSession::awaitServers()
{
    const bool up = waitForGraph([this](const SoundGraph &graph) {
        if (!m_configuration.speakers.empty())
            return graph.defaultNode("default.audio.sink") == "speakers" &&
                   !graph.portsOf(graph.node("speakers")->id).empty();
        return std::any_of(graph.clients.begin(), graph.clients.end(), [](const GraphClient &client) {
            const auto name = client.properties.find("application.name");
            return name != client.properties.end() && name->second.starts_with("WirePlumber");
        });
    });
    if (!up)
        throw std::runtime_error("the session manager does not answer");
    const auto pulseSocket = m_environment.runtime() / "pulse/native";
    if (!m_configuration.pulse)
        return;
    if (!waitUntil([&] { return std::filesystem::exists(pulseSocket); }, 5s))
        throw std::runtime_error("no pulse server: " + m_pulse->output());
    runToEnd({"pactl", "info"});
}

void PrivateSession::stopSoundServers()
{
    m_pulse.reset();
    m_wireplumber.reset();
    m_pipewire.reset();
    std::filesystem::remove(m_environment.runtime() / "pipewire-0");
    std::filesystem::remove(m_environment.runtime() / "pulse/native");
}

void PrivateSession::kill(SoundServer server)
{
    const auto &process = server == SoundServer::pipewire         ? m_pipewire
                          : server == SoundServer::sessionManager ? m_wireplumber
                                                                  : m_pulse;
    process->signal(SIGKILL);
    if (!process->waitForEnd(5s))
        throw std::runtime_error("a killed server does not end");
}

void PrivateSession::startSessionManager()
{
    m_wireplumber = start({"wireplumber"});
    awaitServers();
}

void PrivateSession::hangServer()
{
    m_pipewire->signal(SIGSTOP);
}

void PrivateSession::resumeServer()
{
    if (m_pipewire)
        m_pipewire->signal(SIGCONT);
}

void PrivateSession::hangSessionManager()
{
    m_wireplumber->signal(SIGSTOP);
}

void PrivateSession::resumeSessionManager()
{
    m_wireplumber->signal(SIGCONT);
}

std::unique_ptr<ChildProcess> PrivateSession::start(const Arguments &command)
{
    const std::string program = std::filesystem::path(command.front()).filename();
    const std::string log = std::to_string(m_started++) + "-" + program + ".log";
    return std::make_unique<ChildProcess>(command, m_environment.root() / log);
}

bool PrivateSession::waitForGraph(const std::function<bool(const SoundGraph &)> &condition,
                                  std::chrono::milliseconds patience)
{
    return waitUntil([&] { return condition(SoundGraph::read()); }, patience);
}

void PrivateSession::set(const std::string &setting, const std::string &value)
{
    runToEnd({"pw-metadata", "-n", "settings", "0", setting, value});
}

void PrivateSession::makeClientsUrgent()
{
    // Later PipeWires have the one configuration, which is of this kind, and refuse the name of the other.
    constexpr const char *urgent = "client-rt.conf";
    if (std::filesystem::exists(std::filesystem::path("/usr/share/pipewire") / urgent))
        m_environment.set("PIPEWIRE_CONFIG_NAME", urgent);
}

void PrivateSession::chooseDefault(const std::string &key, const std::string &nodeName)
{
    runToEnd({"pw-metadata", "0", key, R"({ "name": ")" + nodeName + R"(" })", "Spa:String:JSON"});
}

void PrivateSession::printLogs() const
{
    for (const auto &entry : std::filesystem::directory_iterator(m_environment.root())) {
        if (entry.path().extension() != ".log" || entry.file_size() == 0)
            continue;
        std::cerr << "---- " << entry.path().filename().string() << '\n' << std::ifstream(entry.path()).rdbuf();
    }
}

} // namespace tolvenary::session
