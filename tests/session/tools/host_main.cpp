#include "tests/session/support/sound_players.h"
#include "tests/session/support/virtual_devices.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <sys/wait.h>

using namespace tolvenary::session;

namespace
{

constexpr auto patience = std::chrono::minutes(5);

/// Runs the command in a session with device, voice and player, and prints what it said; its exit status.
int host(Arguments command)
{
    PrivateSession session;
    const auto device = makeBlackHole(session);
    const auto microphone = makeMicrophone(session);
    const auto voice = speakInto(session, microphone->nodeName(), {"MONO=tone:997:0.25"});
    const auto player = playApplication(session);
    std::ranges::replace(command, "PLAYER", std::to_string(player->pid()));
    const auto program = session.start(command);
    const std::optional<int> status = program->waitForEnd(patience);
    std::fputs(program->output().c_str(), stdout);
    if (!status)
        throw std::runtime_error(command.front() + " does not end");
    if (!WIFEXITED(*status))
        throw std::runtime_error(command.front() + " was ended by signal " + std::to_string(WTERMSIG(*status)));
    return WEXITSTATUS(*status);
}

} // namespace

/// Runs a program in a sound session of its own, in which somebody speaks and an application plays: COMMAND
/// [ARGUMENT...]. The word PLAYER among the arguments becomes the application's process id.
int main(int argc, char **argv)
try {
    const Arguments command(argv + 1, argv + argc);
    if (command.empty())
        throw std::runtime_error("usage: session_host COMMAND [ARGUMENT...]");
    return host(command);
} catch (const std::exception &error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
