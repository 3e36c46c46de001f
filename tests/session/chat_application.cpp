#include "tests/session/chat_application.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace tolvenary::session
{

namespace
{

constexpr std::size_t channels = 2;

std::filesystem::path newFile(PrivateSession &session)
{
    static int count = 0;
    return session.environment().root() / ("heard-" + std::to_string(count++) + ".raw");
}

/// The text of a line behind this label; empty where the line is another.
std::string labelled(const std::string &line, const std::string &label)
{
    const auto at = line.find(label);
    return at == std::string::npos ? std::string() : line.substr(at + label.size());
}

} // namespace

ChatApplication::ChatApplication(PrivateSession &session, const std::string &source)
    : m_file(newFile(session)),
      m_recorder(session.start({"parec", "--device=" + source, "--format=float32le", "--rate=48000", "--channels=2",
                                "--latency-msec=50", m_file}))
{
}

std::vector<Samples> ChatApplication::heardLast(std::size_t frames) const
{
    std::ifstream file(m_file, std::ios::binary | std::ios::ate);
    constexpr std::size_t frameSize = channels * sizeof(float);
    const std::size_t heard = file ? static_cast<std::size_t>(file.tellg()) / frameSize : 0;
    if (heard < frames)
        return {};
    file.seekg(static_cast<std::streamoff>((heard - frames) * frameSize));
    Samples interleaved(frames * channels);
    file.read(reinterpret_cast<char *>(interleaved.data()), static_cast<std::streamsize>(frames * frameSize));
    std::vector<Samples> result(channels, Samples(frames));
    for (std::size_t i = 0; i < interleaved.size(); ++i)
        result[i % channels][i / channels] = interleaved[i];
    return result;
}

bool comesToHearTheMix(MixBed &bed, const ChatApplication &chat)
{
    const auto isMix = [](const Samples &side) {
        const Heard heard = heardIn(side, 48000);
        return isLevel(heard.microphone, theWholeMix.microphone) && isLevel(heard.application, theWholeMix.application);
    };
    return bed.waitFor(
        [&] {
            const std::vector<Samples> heard = chat.heardLast(24000);
            return heard.size() == channels && std::ranges::all_of(heard, isMix);
        },
        std::chrono::seconds(15));
}

std::optional<ListedSource> listedSource(const std::string &name)
{
    std::istringstream list(runToEnd({"pactl", "list", "sources"}));
    std::optional<ListedSource> found;
    for (std::string line; std::getline(list, line);) {
        if (const std::string listed = labelled(line, "\tName: "); !listed.empty()) {
            if (found)
                break;
            if (listed == name)
                found.emplace();
        }
        if (!found)
            continue;
        if (const std::string description = labelled(line, "\tDescription: "); !description.empty())
            found->description = description;
        if (const std::string sink = labelled(line, "\tMonitor of Sink: "); !sink.empty())
            found->isMonitor = sink != "n/a";
    }
    return found;
}

} // namespace tolvenary::session
