#include "tests/session/tools/feeder.h"
#include "tests/session/tools/stream_player.h"

#include <csignal>
#include <iostream>
#include <optional>
#include <pipewire/pipewire.h>

using namespace tolvenary::session;

namespace
{

void play(const PlayerOptions &options)
{
    pw_main_loop *loop = pw_main_loop_new(nullptr);
    const auto quit = [](void *data, int /*signal*/) { pw_main_loop_quit(static_cast<pw_main_loop *>(data)); };
    pw_loop_add_signal(pw_main_loop_get_loop(loop), SIGTERM, quit, loop);
    pw_loop_add_signal(pw_main_loop_get_loop(loop), SIGINT, quit, loop);
    {
        std::optional<Feeder> feeder;
        std::optional<StreamPlayer> player;
        if (options.feed)
            feeder.emplace(pw_main_loop_get_loop(loop), options);
        else
            player.emplace(pw_main_loop_get_loop(loop), options);
        pw_main_loop_run(loop);
    }
    pw_main_loop_destroy(loop);
}

} // namespace

/// Plays until it is told to end.
int main(int argc, char **argv)
{
    pw_init(&argc, &argv);
    try {
        const PlayerOptions options = PlayerOptions::parse({argv + 1, argv + argc});
        play(options);
    } catch (const std::exception &error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    pw_deinit();
    return 0;
}
