#include "tests/session/support/busy_loops.h"
#include "tests/session/tools/soak_stage.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>

using namespace tolvenary::session;

namespace
{

using Clock = std::chrono::steady_clock;

struct Totals {
    SteadyGaps gaps;
    SteadyGaps gapsOfChanges;
    std::size_t changes = 0;
    std::size_t unheardReturns = 0; ///< of the device
    double slowestReturn = 0;       ///< in seconds
};

void print(Clock::duration elapsed, const SoakStage &stage, const Totals &totals)
{
    const ProcessState state = stage.state();
    const double minutes = std::chrono::duration<double, std::ratio<60>>(elapsed).count();
    std::printf(
        "%6.1f min, %5.0f s heard: %zu gaps of ours, %zu of a source, %zu of xruns (%zu); %zu changes with %zu, "
        "device back after %.2f s (%zu not); %ld kB, %zu descriptors, %zu threads\n",
        minutes, stage.heardSeconds(), totals.gaps.ours, totals.gaps.sources, totals.gaps.xruns, totals.gaps.jumps,
        totals.changes, totals.gapsOfChanges.ours, totals.slowestReturn, totals.unheardReturns, state.kilobytes,
        state.descriptors, state.threads);
    std::fflush(stdout);
}

void printThreads(const SoakStage &stage)
{
    const std::string threads = stage.realTimeThreads();
    std::printf("the data thread: %s\n", threads.empty() ? "ordinary, the session allows no other" : threads.c_str());
}

/// Listens for a while and tells at once what is wrong.
SteadyGaps listen(SoakStage &stage)
{
    const SteadyGaps gaps = stage.listen();
    for (const std::string &account : gaps.accounts)
        std::printf("  a gap of ours after %.0f s: %s\n", stage.heardSeconds(), account.c_str());
    return gaps;
}

/// What changes every minute: the microphone, and the device.
void change(SoakStage &stage, Totals &totals)
{
    totals.gapsOfChanges += stage.changeMicrophone();
    if (const auto seconds = stage.replugDevice())
        totals.slowestReturn = std::max(totals.slowestReturn, *seconds);
    else
        ++totals.unheardReturns;
    ++totals.changes;
}

/// For as long as is wished; false when the program ended before that.
bool run(SoakStage &stage, std::chrono::duration<double> length, Totals &totals)
{
    constexpr auto betweenChanges = std::chrono::minutes(1);
    const auto begin = Clock::now();
    auto nextChange = begin + betweenChanges;
    while (Clock::now() - begin < length) {
        if (!stage.isRunning())
            return false;
        totals.gaps += listen(stage);
        if (Clock::now() < nextChange)
            continue;
        change(stage, totals);
        nextChange += betweenChanges;
        print(Clock::now() - begin, stage, totals);
    }
    print(Clock::now() - begin, stage, totals);
    return true;
}

/// In kilobytes. Two hours are 3600 visits, and were seen to take 116.
constexpr long mostGrowth = 1024;

bool soak(SoakStage &stage, std::chrono::duration<double> length)
{
    printThreads(stage);
    Totals totals;
    totals.gaps += listen(stage); // what the first visitors cost is no leak
    const ProcessState before = stage.stateAlone();
    if (!run(stage, length, totals)) {
        std::puts("the program has ended");
        return false;
    }
    const ProcessState after = stage.stateAlone();
    std::printf("from beginning to end: %ld to %ld kB, %zu to %zu descriptors, %zu to %zu threads\n", before.kilobytes,
                after.kilobytes, before.descriptors, after.descriptors, before.threads, after.threads);
    if (stage.listensWithoutASource() > 0)
        std::printf("a source was missing from %zu listens\n", stage.listensWithoutASource());
    return totals.gaps.ours == 0 && totals.gapsOfChanges.ours == 0 && totals.unheardReturns == 0 &&
           stage.listensWithoutASource() == 0 && after.descriptors <= before.descriptors &&
           after.threads <= before.threads && after.kilobytes <= before.kilobytes + mostGrowth;
}

} // namespace

/// `session_soak PROGRAM HOURS [--loaded]`: the program runs for that long while an application comes and goes every
/// second, the gains move, and every minute another microphone becomes the default and the device is unplugged and
/// plugged in again; loaded, with every processor busy. Succeeds when there was no gap of ours, the mix was heard again
/// after each change, with all that belongs in it, and nothing was left behind.
int main(int argc, char **argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s PROGRAM HOURS [--loaded]\n", argv[0]);
        return 2;
    }
    try {
        SoakStage stage(argv[1]);
        std::optional<BusyLoops> load;
        if (argc > 3 && std::string_view(argv[3]) == "--loaded")
            std::printf("%zu busy loops\n", load.emplace().count());
        return soak(stage, std::chrono::duration<double, std::ratio<3600>>(std::atof(argv[2]))) ? 0 : 1;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
