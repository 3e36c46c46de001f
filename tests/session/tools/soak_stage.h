#pragma once

#include "tests/session/support/process_state.h"
#include "tests/session/support/recorder.h"
#include "tests/session/support/sound_players.h"
#include "tests/session/support/steady_gaps.h"
#include "tests/session/support/virtual_devices.h"

#include <optional>

namespace tolvenary::session
{

/// A session in which the program runs without its window while things happen around it. All that it mixes is steady,
/// so that every fault is a jump: two microphones, a program that plays on and on, and a visitor.
class SoakStage
{
  public:
    /// `program` is the program without its window.
    explicit SoakStage(const std::string &program);

    /// Listens for ten seconds, in the course of which the visitor comes and goes, a second each.
    SteadyGaps listen();
    /// Makes the other microphone the default; listens all the while.
    SteadyGaps changeMicrophone();
    /// Unplugs the device and plugs it in again: how many seconds later the mix was heard in it; none if it was not
    /// within two.
    std::optional<double> replugDevice();
    /// Seconds of sound that listen() and changeMicrophone() have heard.
    double heardSeconds() const { return m_heardSeconds; }
    /// How many times listen() missed the microphone or the player: what is silent from one listen to the next jumps
    /// in neither.
    std::size_t listensWithoutASource() const { return m_listensWithoutASource; }

    bool isRunning() { return m_program->isRunning(); }
    /// Ends the visit first, so that two such states can be compared.
    ProcessState stateAlone();
    ProcessState state() const { return ProcessState::of(m_program->pid()); }
    std::string realTimeThreads() const { return session::realTimeThreads(m_program->pid()); }

  private:
    void visit();
    SteadyGaps judge(const Recording &recording);

    PrivateSession m_session;
    std::unique_ptr<VirtualDevice> m_device;
    std::unique_ptr<VirtualDevice> m_microphone;
    std::unique_ptr<VirtualDevice> m_otherMicrophone;
    std::unique_ptr<ChildProcess> m_voice;
    std::unique_ptr<ChildProcess> m_otherVoice;
    std::unique_ptr<ChildProcess> m_player;
    std::unique_ptr<ChildProcess> m_program;
    std::unique_ptr<ChildProcess> m_visitor;
    std::unique_ptr<Recorder> m_recorder;
    bool m_otherIsDefault = false;
    double m_heardSeconds = 0;
    std::size_t m_listensWithoutASource = 0;
};

} // namespace tolvenary::session
