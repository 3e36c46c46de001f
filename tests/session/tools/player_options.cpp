#include "tests/session/tools/player_options.h"

#include <stdexcept>

namespace tolvenary::session
{

PlayerOptions PlayerOptions::parse(const std::vector<std::string> &arguments)
{
    PlayerOptions options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string &word = arguments[i];
        if (word == "--name")
            options.name = arguments.at(++i);
        else if (word == "--application")
            options.application = arguments.at(++i);
        else if (word == "--rate")
            options.rate = std::stoi(arguments.at(++i));
        else if (word == "--streams")
            options.streams = std::stoi(arguments.at(++i));
        else if (word == "--visits")
            options.visits = std::stoi(arguments.at(++i));
        else if (word == "--feed")
            options.feed = true;
        else if (word == "--source")
            options.source = true;
        else if (word == "--withhold")
            options.source = options.withhold = true;
        else if (word == "--sink")
            options.sink = true;
        else if (word == "--short")
            options.shortSink = true;
        else if (word == "--die")
            options.die = true;
        else if (word == "--lie")
            options.lie = true;
        else if (word == "--keep-channels")
            options.keepChannels = true;
        else if (const auto equals = word.find('='); equals != std::string::npos) {
            options.channels.push_back(word.substr(0, equals));
            options.sounds.push_back(SignalSource::parse(word.substr(equals + 1)));
        } else
            throw std::runtime_error("not an option: " + word);
    }
    if (options.channels.empty())
        throw std::runtime_error("nothing to play");
    return options;
}

} // namespace tolvenary::session
