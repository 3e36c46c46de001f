#pragma once

#include "tests/session/support/accessible_window.h"
#include "tests/session/support/private_session.h"
#include "tests/session/support/recording.h"
#include "tests/session/support/virtual_devices.h"
#include "tests/session/support/virtual_display.h"

#include <QGuiApplication>

namespace tolvenary::session
{

/// Tracks of the demonstration's recording.
enum DemoTrack { demoVoice, demoMusicLeft, demoMusicRight, demoDeviceLeft, demoDeviceRight };

struct DemoGains {
    double microphone = 1;
    double application = 1;
};

/// A desktop session with somebody who speaks, a program that plays, the device, and the real window, which is operated
/// through the accessibility tree as a user would.
class DemoStage
{
  public:
    DemoStage(int &argc, char **argv, const std::string &program, const std::string &installer);

    /// Moves both sliders, picks the music program, presses Start, and waits until the status counts frames of both.
    void pressStart(float microphoneGain, float applicationGain);
    void pressStop();

    PrivateSession &session() { return m_session; }
    /// The process with the window.
    pid_t program() const { return m_program->pid(); }

    Recording record(int seconds);
    void takePicture(const std::filesystem::path &file);

    /// As the sliders read back.
    DemoGains gains();
    /// "Running → …" with both counts.
    std::string statusLine();

  private:
    void showWindow(const std::string &program);
    void pick(const std::string &picker, const std::string &row);

    PrivateSession m_session;
    QGuiApplication m_application;
    std::unique_ptr<VirtualDevice> m_microphone;
    std::unique_ptr<ChildProcess> m_voice;
    std::unique_ptr<ChildProcess> m_music;
    VirtualDisplay m_display;
    std::unique_ptr<ChildProcess> m_program;
    std::unique_ptr<AccessibleWindow> m_window;
};

} // namespace tolvenary::session
