#pragma once

#include "tests/session/support/private_session.h"

namespace tolvenary::session
{

/// What an application plays, and how it shows itself.
struct Application {
    std::string nodeName = "player";
    std::string applicationName = "Player";
    int rate = 48000;
    std::vector<std::string> channels = {"FL=tone:1499:0.2", "FR=tone:1499:0.2"}; ///< CHANNEL=SOUND
};

/// Starts another process that plays into the default sink, as a native client. Returns when it is linked.
std::unique_ptr<ChildProcess> playApplication(PrivateSession &session, const Application &application = {});

/// Starts another process that speaks into each channel of a microphone: CHANNEL=SOUND. Returns when it is linked.
std::unique_ptr<ChildProcess> speakInto(PrivateSession &session, const std::string &microphone,
                                        const std::vector<std::string> &channels);

/// Starts another process that plays into the default sink through the pulse server, in stereo: the sounds of the left
/// and the right side. Returns when it is linked.
std::unique_ptr<ChildProcess> playPulseClient(PrivateSession &session, const std::vector<std::string> &sounds);

/// Starts another process that is the default source, and speaks: CHANNEL=SOUND. Other than a device it goes on without
/// a break when the server changes the length of its cycles.
std::unique_ptr<ChildProcess> startMicrophone(PrivateSession &session, int rate,
                                              const std::vector<std::string> &channels);

/// Starts another process that is the default source, with a mono port, and never delivers a single buffer.
std::unique_ptr<ChildProcess> startDeadMicrophone(PrivateSession &session);

/// "node:port" of one channel that an application plays.
std::string applicationPort(const std::string &nodeName, const std::string &channel);

} // namespace tolvenary::session
