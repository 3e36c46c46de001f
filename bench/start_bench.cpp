// From the press of Start until both sources are heard in the device, and from the press of Stop until the last node is
// gone; beside two pw-loopback, from their launch until the same is heard, and from the signal that ends them until
// their nodes are gone.

#include "bench/graph_watch.h"
#include "bench/loopback_pair.h"
#include "bench/report.h"
#include "tests/session/mix_bed.h"

#include <array>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace
{

using namespace tolvenary;
using namespace tolvenary::session;
using bench::GraphWatch;
using bench::LoopbackPair;
using bench::progress;
using Clock = GraphWatch::Clock;

constexpr std::array<int, 2> quanta{64, 1024};
constexpr int rounds = 25;
constexpr const char *ourNodes = "com.tolvenary.";

/// Neither source alone is this loud.
constexpr float bothSources = 0.6F;

struct Times {
    std::vector<double> start; ///< milliseconds
    std::vector<double> stop;
};

double millisecondsSince(Clock::time_point begin, Clock::time_point end)
{
    return std::chrono::duration<double, std::milli>(end - begin).count();
}

void demand(bool condition, const char *what)
{
    if (!condition)
        throw std::runtime_error(what);
}

/// One start and stop of whoever mixes.
template <typename Start, typename Stop>
void measure(MixBed &bed, GraphWatch &watch, const char *nodes, Times &times, Start start, Stop stop)
{
    demand(bed.waitFor([&] { return watch.isSilent(); }), "the device is not silent");
    watch.listenFor(bothSources);
    const auto pressed = Clock::now();
    start();
    demand(bed.waitFor([&] { return watch.heard().has_value(); }), "the mix is not heard");
    times.start.push_back(millisecondsSince(pressed, *watch.heard()));

    const auto ended = Clock::now();
    stop();
    demand(bed.waitFor([&] { return watch.gone(nodes).has_value(); }), "nodes stay behind");
    times.stop.push_back(millisecondsSince(ended, *watch.gone(nodes)));
}

/// Somewhere else in the cycle in each round: the server's next cycle is what both wait for, and whoever always presses
/// right behind one would be compared by whole cycles.
void spreadOverCycle(int quantum, int round)
{
    std::this_thread::sleep_for(std::chrono::microseconds(quantum * (round * 7 % rounds) * 1000 / 48 / rounds));
}

void report(const std::string &work, const std::vector<double> &ours, const std::vector<double> &theirs)
{
    bench::report({.part = "Start and stop",
                   .work = work,
                   .beside = "two pw-loopback",
                   .unit = "ms",
                   .ours = ours,
                   .theirs = theirs,
                   .mostRatio = 1.0});
}

void run()
{
    MixBedOptions options;
    options.configuration.shippedDevice = true;
    options.device = false;
    options.voice = {"MONO=steady:0.25"};
    options.player.channels = {"FL=steady:0.5", "FR=steady:0.5"};
    MixBed bed(options);
    GraphWatch watch(bed.session(), bed.monitor("FL"));
    bed.launch();
    bed.mix().setSelectedAppID(bed.player()->pid());
    for (const int quantum : quanta) {
        bed.session().set("clock.force-quantum", std::to_string(quantum));
        const std::string size = ", " + std::to_string(quantum) + " frames a cycle";
        Times ours;
        Times theirs;
        for (int round = 1; round <= rounds; ++round) {
            progress("start and stop" + size + ", round " + std::to_string(round) + " of " + std::to_string(rounds));
            const auto measureOurs = [&] {
                spreadOverCycle(quantum, round);
                measure(
                    bed, watch, ourNodes, ours, [&] { bed.pressStart(); }, [&] { bed.stop(); });
            };
            const auto measureLoopbacks = [&] {
                spreadOverCycle(quantum, round);
                std::unique_ptr<LoopbackPair> loopbacks;
                measure(
                    bed, watch, LoopbackPair::nodeNames, theirs,
                    [&] { loopbacks = std::make_unique<LoopbackPair>(bed.session()); }, [&] { loopbacks->end(); });
            };
            const bool weFirst = round % 2 == 1;
            if (weFirst)
                measureOurs();
            measureLoopbacks();
            if (!weFirst)
                measureOurs();
        }
        report("start until both are heard" + size, ours.start, theirs.start);
        report("stop until the last node is gone" + size, ours.stop, theirs.stop);
    }
}

} // namespace

int main()
{
    try {
        run();
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
