#pragma once

#include "tests/session/support/child_process.h"
#include "tests/session/support/private_environment.h"
#include "tests/session/support/session_configuration.h"
#include "tests/session/support/sound_graph.h"

#include <functional>
#include <memory>

namespace tolvenary::session
{

enum class SoundServer { pipewire, sessionManager, pulse };

/// A desktop session of a test's own: message bus, PipeWire, WirePlumber, and a pulse server if wanted; nothing of it
/// is the user's. The environment points to it from construction to destruction. When the constructor returns, every
/// server has answered. To be made before any other thread runs.
class PrivateSession
{
  public:
    explicit PrivateSession(const SessionConfiguration &configuration = {});
    /// Ends all servers. When an exception flies, or the test was told to keepLogs(), their logs are printed.
    ~PrivateSession();

    PrivateEnvironment &environment() { return m_environment; }

    /// Programs that start from now on ask for real-time priority, as ours does: what they were late with would be
    /// heard as ours.
    void makeClientsUrgent();

    /// The sound servers go away, as in a crash; what clients had in them is gone.
    void stopSoundServers();
    void startSoundServers();
    void restartSoundServers();
    /// One of them is killed, and leaves behind what a crash leaves behind. Returns when it has ended.
    void kill(SoundServer server);
    /// Starts the session manager again after it was killed.
    void startSessionManager();
    /// PipeWire neither answers nor closes connections until resumed.
    void hangServer();
    void resumeServer();
    /// The same for the session manager.
    void hangSessionManager();
    void resumeSessionManager();

    /// The sound server's process.
    pid_t soundServer() const { return m_pipewire->pid(); }
    pid_t sessionManager() const { return m_wireplumber->pid(); }

    /// Starts a program in this session; its output is in a file of the session.
    std::unique_ptr<ChildProcess> start(const Arguments &command);

    /// Waits until the graph fulfils `condition`; returns whether it did.
    bool waitForGraph(const std::function<bool(const SoundGraph &)> &condition,
                      std::chrono::milliseconds patience = std::chrono::seconds(8));

    /// Prints every server's log on standard error at the end.
    void keepLogs() { m_printLogs = true; }

    /// A server setting that holds at once for the whole graph, for example ("clock.force-quantum", "64").
    void set(const std::string &setting, const std::string &value);
    /// The user's choice of a default: key "default.configured.audio.source", or "…sink".
    void chooseDefault(const std::string &key, const std::string &nodeName);

  private:
    void startBus();
    void awaitServers();
    void printLogs() const;

    SessionConfiguration m_configuration;
    PrivateEnvironment m_environment;
    std::unique_ptr<ChildProcess> m_bus;
    std::unique_ptr<ChildProcess> m_pipewire;
    std::unique_ptr<ChildProcess> m_wireplumber;
    std::unique_ptr<ChildProcess> m_pulse;
    int m_started = 0;
    bool m_printLogs = false;
};

} // namespace tolvenary::session
