#pragma once

#include "app/linux_platform.h"
#include "core/mix_coordinator.h"
#include "tests/session/support/private_session.h"
#include "tests/session/support/recorder.h"
#include "tests/session/support/sound_players.h"
#include "tests/session/support/virtual_devices.h"

#include <QCoreApplication>

namespace tolvenary::session
{

/// What a test wants to find when it begins.
struct MixBedOptions {
    SessionConfiguration configuration = {};
    bool device = true;
    DeviceKind deviceKind = DeviceKind::pair;
    bool microphone = true;
    std::string microphoneChannels = "MONO";
    std::vector<std::string> voice = {"MONO=tone:997:0.25"};
    bool application = true;
    Application player = {};
    bool urgent = false;        ///< players as urgent as the program, so that none is late when the machine is
    bool hangsAtLaunch = false; ///< the server hangs before the program is there
};

/// The whole real program but for its window, on a sound session of its own: devices and players by other processes,
/// the coordinator on the real platform. Nothing runs yet when the constructor returns.
class MixBed
{
  public:
    explicit MixBed(MixBedOptions options = {});
    ~MixBed();

    MixBed(const MixBed &) = delete;
    MixBed &operator=(const MixBed &) = delete;

    PrivateSession &session() { return m_session; }
    LinuxPlatform &platform() { return *m_platform; }
    MixCoordinator &mix() { return *m_mix; }

    std::unique_ptr<VirtualDevice> &device() { return m_device; }
    std::unique_ptr<VirtualDevice> &microphone() { return m_microphone; }
    std::unique_ptr<ChildProcess> &voice() { return m_voice; }
    std::unique_ptr<ChildProcess> &player() { return m_player; }

    /// Everything that a restart of the sound server takes away, and plugs in again.
    void unplugAll();
    void plugAll();

    /// Waits until the program knows what the server has to tell, or that it does not answer.
    void settle();
    /// What the panel does at launch: both lists.
    void launch();
    /// Launches, picks the player, or this very process where there is none, and presses Start. Returns the status.
    std::string start();
    /// Presses Start as things are.
    std::string pressStart();
    /// What the panel's Stop does.
    void stop();

    /// start(), and waits until both sources have delivered frames.
    void run();

    std::string status() const;
    bool isRunning() const;

    /// Runs the event loop until the condition holds; false when it does not within `patience`.
    bool waitFor(const std::function<bool()> &condition, std::chrono::milliseconds patience = std::chrono::seconds(10));
    /// Runs the event loop while a recorder records.
    Recording record(Recorder &recorder, std::size_t frames);
    /// waitFor() on a condition of the sound server's graph.
    bool waitForGraph(const std::function<bool(const SoundGraph &)> &condition,
                      std::chrono::milliseconds patience = std::chrono::seconds(10));

    /// "node:port" where the device is heard: side "FL" or "FR".
    std::string monitor(const std::string &side) const { return deviceMonitor(m_options.deviceKind, side); }

    /// Another process with so many applications, each of which plays these sounds on CHANNEL=SOUND. Returns when the
    /// program hears all of them.
    std::unique_ptr<ChildProcess> playMany(int applications, const std::vector<std::string> &channels);

    /// Nodes of this process, but for the tests' own recorder and player.
    static std::vector<GraphNode> nodesOfProgram(const SoundGraph &graph);

  private:
    MixBedOptions m_options;
    PrivateSession m_session;
    QCoreApplication m_application;
    std::unique_ptr<VirtualDevice> m_device;
    std::unique_ptr<VirtualDevice> m_microphone;
    std::unique_ptr<ChildProcess> m_voice;
    std::unique_ptr<ChildProcess> m_player;
    std::unique_ptr<LinuxPlatform> m_platform;
    std::unique_ptr<MixCoordinator> m_mix;
};

} // namespace tolvenary::session
