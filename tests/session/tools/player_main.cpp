#include "tests/session/tools/feeder.h"
#include "tests/session/tools/liar.h"
#include "tests/session/tools/short_sink.h"
#include "tests/session/tools/stream_player.h"
#include "tests/session/tools/unfit_sink.h"

#include <chrono>
#include <csignal>
#include <deque>
#include <iostream>
#include <optional>
#include <pipewire/pipewire.h>

using namespace tolvenary::session;

namespace
{

/// Some go as soon as they have come, some while they are being linked, some after a few cycles.
void visit(const PlayerOptions &options)
{
    pw_loop *loop = pw_loop_new(nullptr);
    pw_loop_enter(loop);
    int heard = 0;
    for (int visit = 0; visit < options.visits; ++visit) {
        const StreamPlayer player(loop, options);
        const int blocks = visit % 3;
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (player.blocksPlayed() < blocks && std::chrono::steady_clock::now() < end)
            pw_loop_iterate(loop, 5);
        heard += player.blocksPlayed() >= blocks ? 1 : 0;
    }
    pw_loop_leave(loop);
    pw_loop_destroy(loop);
    std::cout << heard << " of " << options.visits << " visits" << std::endl;
}

void play(const PlayerOptions &options)
{
    pw_main_loop *loop = pw_main_loop_new(nullptr);
    const auto quit = [](void *data, int /*signal*/) { pw_main_loop_quit(static_cast<pw_main_loop *>(data)); };
    pw_loop_add_signal(pw_main_loop_get_loop(loop), SIGTERM, quit, loop);
    pw_loop_add_signal(pw_main_loop_get_loop(loop), SIGINT, quit, loop);
    {
        std::optional<Feeder> feeder;
        std::optional<Liar> liar;
        std::deque<StreamPlayer> players;
        // Before anybody makes a thread, which would not know that the signal is to be held back.
        const auto change = [](void *data, int /*signal*/) {
            for (StreamPlayer &player : *static_cast<std::deque<StreamPlayer> *>(data))
                player.changeFormat();
        };
        std::optional<UnfitSink> sink;
        const auto changeStory = [](void *data, int /*signal*/) {
            static_cast<std::optional<Liar> *>(data)->value().changeStory();
        };
        const auto decline = [](void *data, int /*signal*/) {
            static_cast<std::optional<UnfitSink> *>(data)->value().decline();
        };
        std::optional<ShortSink> shortSink;
        const auto tell = [](void *data, int /*signal*/) {
            static_cast<std::optional<ShortSink> *>(data)->value().tell();
        };
        if (options.lie)
            pw_loop_add_signal(pw_main_loop_get_loop(loop), SIGUSR1, changeStory, &liar);
        else if (options.sink)
            pw_loop_add_signal(pw_main_loop_get_loop(loop), SIGUSR1, decline, &sink);
        else if (options.shortSink)
            pw_loop_add_signal(pw_main_loop_get_loop(loop), SIGUSR1, tell, &shortSink);
        else
            pw_loop_add_signal(pw_main_loop_get_loop(loop), SIGUSR1, change, &players);
        if (options.feed)
            feeder.emplace(pw_main_loop_get_loop(loop), options);
        else if (options.lie)
            liar.emplace(pw_main_loop_get_loop(loop), options);
        else if (options.sink)
            sink.emplace(pw_main_loop_get_loop(loop), options);
        else if (options.shortSink)
            shortSink.emplace(pw_main_loop_get_loop(loop), options);
        else
            for (int i = 0; i < options.streams; ++i)
                players.emplace_back(pw_main_loop_get_loop(loop), options);
        pw_main_loop_run(loop);
    }
    pw_main_loop_destroy(loop);
}

} // namespace

/// Plays until it is told to end; goes on in another format, with another lie, declines all sound, or says whether it
/// has heard any, at SIGUSR1.
int main(int argc, char **argv)
{
    pw_init(&argc, &argv);
    try {
        const PlayerOptions options = PlayerOptions::parse({argv + 1, argv + argc});
        if (options.visits > 0)
            visit(options);
        else
            play(options);
    } catch (const std::exception &error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    pw_deinit();
    return 0;
}
