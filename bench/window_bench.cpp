// The window beside those that people keep open for sound today, and beside the least that a window can be: how long
// from the launch to the first picture, how much memory, how much processor time while it only stands there, in view
// and minimised. The programs take turns in one private session; what counts are the ratios.
// window_bench PROGRAM EMPTY_WINDOW [ROUNDS]

#include "bench/process_meter.h"
#include "bench/report.h"
#include "tests/session/support/sound_players.h"
#include "tests/session/support/virtual_devices.h"
#include "tests/session/support/virtual_display.h"
#include "tests/session/support/wait_until.h"

#include <QImage>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <set>
#include <stdexcept>
#include <thread>

namespace
{

using namespace std::chrono_literals;
using namespace tolvenary::session;
using namespace tolvenary::bench;
using Clock = std::chrono::steady_clock;

constexpr auto settle = 1500ms;
constexpr auto measure = 1s;

struct Subject {
    std::string name;
    Arguments command;
    std::vector<double> firstPicture = {}; ///< milliseconds
    std::vector<double> memory = {};       ///< megabytes
    std::vector<double> resident = {};     ///< megabytes
    std::vector<double> visible = {};      ///< percent of one processor
    std::vector<double> minimised = {};    ///< percent of one processor
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
    const double before = scheduledSeconds(process);
    const auto begin = Clock::now();
    std::this_thread::sleep_for(measure);
    const std::chrono::duration<double> wall = Clock::now() - begin;
    // A thread that ended takes along what it had used.
    return 100 * std::max(0.0, scheduledSeconds(process) - before) / wall.count();
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
    subject.firstPicture.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());

    std::this_thread::sleep_for(settle);
    subject.memory.push_back(memoryMegabytes(program->pid()));
    subject.resident.push_back(residentMegabytes(program->pid()));
    subject.visible.push_back(loadOf(program->pid()));
    runToEnd({"xdotool", "windowminimize", "--sync", windowOf(program->pid())});
    std::this_thread::sleep_for(500ms);
    subject.minimised.push_back(loadOf(program->pid()));
}

struct Aim {
    std::optional<double> ratio = {};
    std::optional<double> minimised = {};
};

void reportRows(const std::string &part, const Subject &ours, const Subject &theirs, const Aim &aim)
{
    const auto row = [&](const char *work, const char *unit, std::vector<double> Subject::*figures) {
        return Row{part, work, theirs.name, unit, ours.*figures, theirs.*figures};
    };
    Row firstPicture = row("launch to the first picture", "ms", &Subject::firstPicture);
    firstPicture.mostRatio = aim.ratio;
    report(firstPicture);
    Row memory = row("memory, its share of what is shared", "MB", &Subject::memory);
    memory.mostRatio = aim.ratio;
    report(memory);
    report(row("memory, all that it shares", "MB", &Subject::resident));
    report(row("processor, in view", "% of one", &Subject::visible));
    Row minimised = row("processor, minimised", "% of one", &Subject::minimised);
    minimised.mostOfOurs = aim.minimised;
    report(minimised);
}

bool isInstalled(const std::string &program)
{
    return !runToEnd({"sh", "-c", "command -v " + program + " || true"}).empty();
}

/// Nothing that is drawn again and again: below a thousandth of a processor.
constexpr double none = 0.1;

int run(const std::string &program, const std::string &empty, int rounds)
{
    PrivateSession session({.pulse = true});
    const auto device = makeBlackHole(session);
    const auto microphone = makeMicrophone(session);
    const auto player = playApplication(session);
    const VirtualDisplay display(session);
    session.environment().set("QT_QPA_PLATFORM", "xcb");

    Subject ours{"ours", {program}};
    Subject oursWithGL{"ours, GL", {"env", "QSG_RHI_BACKEND=opengl", program}};
    Subject floor{"empty window", {"env", "QT_QUICK_BACKEND=software", empty}};
    Subject floorWithGL{"empty window, GL", {"env", "QSG_RHI_BACKEND=opengl", empty}};
    std::vector<Subject> neighbours;
    for (const char *name : {"pavucontrol", "qpwgraph", "easyeffects"}) {
        if (isInstalled(name))
            neighbours.push_back({name, {name}});
        else
            progress(std::string("without ") + name + ": it is not installed");
    }

    std::vector<Subject *> subjects{&ours, &floor, &oursWithGL, &floorWithGL};
    for (Subject &neighbour : neighbours)
        subjects.push_back(&neighbour);
    for (int i = 0; i < rounds; ++i) {
        progress("round " + std::to_string(i + 1) + " of " + std::to_string(rounds));
        for (Subject *subject : subjects)
            round(*subject, session, display);
        // Each round begins with another: who comes first finds the least in memory.
        std::rotate(subjects.begin(), subjects.begin() + 1, subjects.end());
    }

    const std::string part = "The window";
    for (const Subject &neighbour : neighbours)
        reportRows(part, ours, neighbour, neighbour.name == "pavucontrol" ? Aim{1.0, none} : Aim{{}, none});
    reportRows(part, ours, floor, {});
    for (const Subject &neighbour : neighbours)
        if (neighbour.name == "pavucontrol")
            reportRows(part + ", with GL", oursWithGL, neighbour, {1.0, none});
    reportRows(part + ", with GL", oursWithGL, floorWithGL, {});
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: window_bench PROGRAM EMPTY_WINDOW [ROUNDS]\n");
        return EXIT_FAILURE;
    }
    try {
        return run(std::filesystem::absolute(argv[1]), std::filesystem::absolute(argv[2]),
                   argc > 3 ? std::max(1, std::atoi(argv[3])) : 9);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
