#include "tests/session/tools/feeder.h"
#include "tests/session/tools/liar.h"
#include "tests/session/tools/short_sink.h"
#include "tests/session/tools/stream_player.h"
#include "tests/session/tools/unfit_sink.h"

#include <chrono>
#include <csignal>
#include <deque>
#include <iostream>
#include <memory>
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

/// Plays as one or several applications do.
class Players final : public Part
{
  public:
    Players(pw_loop *loop, const PlayerOptions &options)
    {
        for (int i = 0; i < options.streams; ++i)
            m_players.emplace_back(loop, options);
    }

    void signalled() override
    {
        for (StreamPlayer &player : m_players)
            player.changeFormat();
    }

  private:
    std::deque<StreamPlayer> m_players;
};

std::unique_ptr<Part> makePart(pw_loop *loop, const PlayerOptions &options)
{
    if (options.feed)
        return std::make_unique<Feeder>(loop, options);
    if (options.lie)
        return std::make_unique<Liar>(loop, options);
    if (options.sink)
        return std::make_unique<UnfitSink>(loop, options);
    if (options.shortSink)
        return std::make_unique<ShortSink>(loop, options);
    return std::make_unique<Players>(loop, options);
}

void play(const PlayerOptions &options)
{
    pw_main_loop *mainLoop = pw_main_loop_new(nullptr);
    pw_loop *loop = pw_main_loop_get_loop(mainLoop);
    const auto quit = [](void *data, int /*signal*/) { pw_main_loop_quit(static_cast<pw_main_loop *>(data)); };
    pw_loop_add_signal(loop, SIGTERM, quit, mainLoop);
    pw_loop_add_signal(loop, SIGINT, quit, mainLoop);
    {
        std::unique_ptr<Part> part;
        const auto signalled = [](void *data, int /*signal*/) {
            (*static_cast<std::unique_ptr<Part> *>(data))->signalled();
        };
        // Before anybody makes a thread, which would not know that the signal is to be held back.
        pw_loop_add_signal(loop, SIGUSR1, signalled, &part);
        part = makePart(loop, options);
        pw_main_loop_run(mainLoop);
    }
    pw_main_loop_destroy(mainLoop);
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
