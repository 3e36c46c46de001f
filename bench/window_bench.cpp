// The window beside the two that people keep open for sound today: how long from the launch to the first picture, how
// much memory, how much processor time while it only stands there, in view and minimised. The programs take turns in
// one private session; what counts are the ratios.
// window_bench PROGRAM [ROUNDS]

#include "bench/median.h"
#include "bench/process_meter.h"
#include "tests/session/support/sound_players.h"
#include "tests/session/support/virtual_devices.h"
#include "tests/session/support/virtual_display.h"
#include "tests/session/support/wait_until.h"

#include <QImage>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <stdexcept>
#include <thread>

namespace
{

using namespace std::chrono_literals;
using namespace tolvenary::session;
using namespace tolvenary::bench;
using Clock = std::chrono::steady_clock;

constexpr auto settle = 3s;
constexpr auto measure = 5s;

struct Subject {
    std::string name;
    Arguments command;
    std::vector<double> firstPicture = {}; ///< seconds
    std::vector<double> memory = {};       ///< megabytes
    std::vector<double> visible = {};      ///< parts of one core
    std::vector<double> minimised = {};    ///< parts of one core
};

/// True when the middle of the screen shows more than an empty desktop or a window of one colour.
bool showsAPicture(const VirtualDisplay &display)
{
    constexpr int enough = 8;
    const QImage screen = display.screenshot();
    std::set<QRgb> colours;
    for (int y = 120; y < 400; y += 2)
        for (int x = 60; x < 460; ++x)
            if (colours.insert(screen.pixel(x, y)).second && colours.size() >= enough)
                return true;
    return false;
}

double loadOf(pid_t process)
{
    const double before = processorSeconds(process);
    const auto begin = Clock::now();
    std::this_thread::sleep_for(measure);
    const std::chrono::duration<double> wall = Clock::now() - begin;
    return (processorSeconds(process) - before) / wall.count();
}

std::string windowOf(pid_t process)
{
    const std::string found =
        runToEnd({"xdotool", "search", "--sync", "--onlyvisible", "--pid", std::to_string(process), "--name", "."});
    return found.substr(0, found.find('\n'));
}

void round(Subject &subject, PrivateSession &session, const VirtualDisplay &display)
{
    if (!waitUntil([&] { return !showsAPicture(display); }, 10s))
        throw std::runtime_error("the screen is not empty");
    const auto begin = Clock::now();
    const auto program = session.start(subject.command);
    if (!waitUntil([&] { return showsAPicture(display); }, 30s))
        throw std::runtime_error(subject.name + " shows nothing: " + program->output());
    subject.firstPicture.push_back(std::chrono::duration<double>(Clock::now() - begin).count());

    std::this_thread::sleep_for(settle);
    subject.memory.push_back(memoryMegabytes(program->pid()));
    subject.visible.push_back(loadOf(program->pid()));
    runToEnd({"xdotool", "windowminimize", "--sync", windowOf(program->pid())});
    std::this_thread::sleep_for(1s);
    subject.minimised.push_back(loadOf(program->pid()));
}

void print(const char *title, const char *unit, double factor, std::vector<double> Subject::*figures,
           const std::vector<Subject> &subjects)
{
    const double ours = spread(subjects.front().*figures).median;
    std::printf("\n%s, %s\n", title, unit);
    for (const Subject &subject : subjects) {
        const Spread value = spread(subject.*figures);
        std::printf("  %-14s %9.2f  (%.2f to %.2f)", subject.name.c_str(), factor * value.median, factor * value.least,
                    factor * value.most);
        if (&subject != &subjects.front() && value.median > 0)
            std::printf("   ours / theirs %.2f", ours / value.median);
        std::printf("\n");
    }
}

int run(const std::string &program, int rounds)
{
    PrivateSession session({.pulse = true});
    const auto device = makeBlackHole(session);
    const auto microphone = makeMicrophone(session);
    const auto player = playApplication(session);
    const VirtualDisplay display(session);
    session.environment().set("QT_QPA_PLATFORM", "xcb");

    std::vector<Subject> subjects{{"ours", {program}}, {"qpwgraph", {"qpwgraph"}}, {"pavucontrol", {"pavucontrol"}}};
    for (int i = 0; i < rounds; ++i)
        for (Subject &subject : subjects)
            round(subject, session, display);

    std::printf("%d rounds: median (least to most)\n", rounds);
    print("Launch to first picture", "ms", 1000, &Subject::firstPicture, subjects);
    print("Memory", "MB (proportional set size)", 1, &Subject::memory, subjects);
    print("Processor time, in view", "% of one core", 100, &Subject::visible, subjects);
    print("Processor time, minimised", "% of one core", 100, &Subject::minimised, subjects);
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: window_bench PROGRAM [ROUNDS]\n");
        return EXIT_FAILURE;
    }
    try {
        return run(std::filesystem::absolute(argv[1]), argc > 2 ? std::max(1, std::atoi(argv[2])) : 9);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
