#include "tests/session/own_player.h"

#include "tests/session/tools/stream_player.h"

#include <optional>
#include <pipewire/pipewire.h>

namespace tolvenary::session
{

namespace
{

std::vector<std::string> withName(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), {"--name", "own-player"});
    return arguments;
}

} // namespace

struct OwnPlayer::Playing {
    explicit Playing(const std::vector<std::string> &channels) : options(PlayerOptions::parse(withName(channels)))
    {
        pw_init(nullptr, nullptr);
        loop = pw_thread_loop_new("own-player", nullptr);
        player.emplace(pw_thread_loop_get_loop(loop), options);
        pw_thread_loop_start(loop);
    }
    ~Playing()
    {
        pw_thread_loop_stop(loop);
        player.reset();
        pw_thread_loop_destroy(loop);
        pw_deinit();
    }
    Playing(const Playing &) = delete;
    Playing &operator=(const Playing &) = delete;

    PlayerOptions options;
    pw_thread_loop *loop = nullptr;
    std::optional<StreamPlayer> player;
};

OwnPlayer::OwnPlayer(const std::vector<std::string> &channels) : m_playing(std::make_unique<Playing>(channels)) {}

OwnPlayer::~OwnPlayer() = default;

} // namespace tolvenary::session
