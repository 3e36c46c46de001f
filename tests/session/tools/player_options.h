#pragma once

#include "tests/session/support/signal_source.h"

#include <string>
#include <vector>

namespace tolvenary::session
{

/// What the player is told on its command line: --name NAME, --application NAME, --rate RATE, --streams COUNT, --visits
/// COUNT, --feed, --source, --withhold, --sink, --short, --die, --lie or --keep-channels, and then for each channel
/// CHANNEL=SOUND, for example FL=tone:997:0.25.
struct PlayerOptions {
    std::string name = "player";
    std::string application = "Player";
    int rate = 48000;
    int streams = 1;           ///< as many applications at once
    int visits = 0;            ///< come and go so many times, and end
    bool feed = false;         ///< play into whatever is linked by hand, instead of into the default sink
    bool source = false;       ///< be a microphone
    bool withhold = false;     ///< be one that never delivers anything
    bool sink = false;         ///< be a sink that takes nothing, and says so at SIGUSR1
    bool shortSink = false;    ///< be a sink with short buffers, that says at SIGUSR1 whether it has heard anything
    bool die = false;          ///< be killed after a quarter of a second, in the middle of a cycle
    bool lie = false;          ///< say of the samples that they are where they are not
    bool keepChannels = false; ///< the server shall not make them those of the sink
    std::vector<std::string> channels;
    std::vector<std::unique_ptr<SignalSource>> sounds;

    /// Throws std::runtime_error on anything else.
    static PlayerOptions parse(const std::vector<std::string> &arguments);
};

} // namespace tolvenary::session
