#pragma once

#include "tests/session/support/private_session.h"
#include "tests/session/support/sound_players.h"
#include "tests/session/support/virtual_devices.h"
#include "tests/session/support/virtual_display.h"

#include <QCoreApplication>

namespace tolvenary::session
{

/// What a user sits in front of: a screen, a microphone that somebody speaks into, a program that plays, and the device
/// for the mix. Making it takes seconds, so the tests of a suite share one.
class Desktop
{
  public:
    static constexpr const char *musicProgram = "Music Box";
    static constexpr const char *device = "BlackHole 2ch";

    explicit Desktop(const DisplayOptions &display = {});

    PrivateSession &session() { return m_session; }
    VirtualDisplay &display() { return m_display; }

    ScreenBox screen() const { return m_display.size(); }

    void plugDevice();
    void unplugDevice();
    bool hasDevice() const { return m_device != nullptr; }

  private:
    PrivateSession m_session;
    QCoreApplication m_application;
    VirtualDisplay m_display;
    std::unique_ptr<VirtualDevice> m_microphone;
    std::unique_ptr<ChildProcess> m_voice;
    std::unique_ptr<ChildProcess> m_music;
    std::unique_ptr<VirtualDevice> m_device;
};

} // namespace tolvenary::session
