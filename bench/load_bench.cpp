// Processor time of the whole path from two sources into the device: the process that mixes and what the sound server
// has to do for it, beside two pw-loopback that do the same mix. A recorder hears both sources and the device all the
// time, so that they run as one graph whether or not anybody mixes; what the server does for them is measured before
// and after each round and taken off both. load_bench [SECONDS]: of each measurement.

#include "bench/loopback_pair.h"
#include "bench/median.h"
#include "bench/process_meter.h"
#include "bench/report.h"
#include "tests/session/mix_bed.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace
{

using namespace std::chrono_literals;
using namespace tolvenary;
using namespace tolvenary::session;
using bench::LoopbackPair;
using bench::progress;
using Clock = std::chrono::steady_clock;
using Processes = std::vector<pid_t>;

constexpr std::array<int, 2> quanta{64, 1024};
constexpr int rounds = 9;

/// Parts of one core, and times a second.
struct Load {
    double mixers = 0;
    double server = 0;
    double wakeUps = 0;
};

/// We mix and the loopbacks mix, in every second round the loopbacks before us; before and after it nobody does.
struct Round {
    Load nobody; ///< the mean of before and after, so that a machine that drifts does not count
    Load ours;
    Load theirs;
};

double total(const Processes &processes, double (*meter)(pid_t))
{
    double sum = 0;
    for (const pid_t process : processes)
        sum += meter(process);
    return sum;
}

class Bench
{
  public:
    explicit Bench(std::chrono::milliseconds measured)
        : m_measured(measured),
          m_bed(options()),
          m_recorder(m_bed.session(), {"microphone:capture_MONO", applicationPort("player", "FL"), m_bed.monitor("FL")})
    {
    }

    void run()
    {
        Loads before = measure({});
        for (int number = 1; number <= rounds; ++number) {
            progress("processor time, round " + std::to_string(number) + " of " + std::to_string(rounds));
            const bool weFirst = number % 2 == 1;
            auto ours = weFirst ? measureOurs() : Loads{};
            const auto theirs = measureLoopbacks();
            if (!weFirst)
                ours = measureOurs();
            const Loads after = measure({});
            for (std::size_t i = 0; i < quanta.size(); ++i)
                m_rounds[i].push_back({mean(before[i], after[i]), ours[i], theirs[i]});
            before = after;
        }
        for (std::size_t i = 0; i < quanta.size(); ++i)
            report(std::to_string(quanta[i]) + " frames a cycle", m_rounds[i]);
    }

  private:
    using Loads = std::array<Load, quanta.size()>;

    static MixBedOptions options()
    {
        MixBedOptions options;
        options.configuration.shippedDevice = true;
        options.device = false;
        options.player.channels = {"FL=steady:0.25", "FR=steady:0.25"};
        options.voice = {"MONO=steady:0.25"};
        return options;
    }

    static Load mean(const Load &one, const Load &other)
    {
        return {.mixers = (one.mixers + other.mixers) / 2,
                .server = (one.server + other.server) / 2,
                .wakeUps = (one.wakeUps + other.wakeUps) / 2};
    }

    Load measureOnce(const Processes &mixers)
    {
        const Processes server{m_bed.session().soundServer()};
        const auto read = [&]() -> Load {
            return {.mixers = total(mixers, bench::scheduledSeconds),
                    .server = total(server, bench::scheduledSeconds),
                    .wakeUps = total(mixers, bench::wakeUps)};
        };
        const Load before = read();
        const auto begin = Clock::now();
        std::this_thread::sleep_for(m_measured);
        const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
        const Load after = read();
        return {.mixers = (after.mixers - before.mixers) / seconds,
                .server = (after.server - before.server) / seconds,
                .wakeUps = (after.wakeUps - before.wakeUps) / seconds};
    }

    Loads measure(const Processes &mixers)
    {
        Loads loads;
        for (std::size_t i = 0; i < quanta.size(); ++i) {
            m_bed.session().set("clock.force-quantum", std::to_string(quanta[i]));
            std::this_thread::sleep_for(300ms);
            loads[i] = measureOnce(mixers);
        }
        return loads;
    }

    /// Waits until the nodes whose names begin so hear these and feed the device by so many links.
    void awaitMix(const std::string &names, const std::vector<const char *> &sources, std::ptrdiff_t linksToDevice)
    {
        const bool linked = m_bed.session().waitForGraph([&](const SoundGraph &graph) {
            const auto activeLinks = [&](const std::string &from, const std::string &to) {
                return std::ranges::count_if(graph.links, [&](const GraphLink &link) {
                    return link.state == "active" && nameOf(graph, link.outputNode).starts_with(from) &&
                           nameOf(graph, link.inputNode).starts_with(to);
                });
            };
            return activeLinks(names, "blackhole_2ch") == linksToDevice &&
                   std::ranges::all_of(sources, [&](const char *source) { return activeLinks(source, names) > 0; });
        });
        if (!linked)
            throw std::runtime_error("the device is not fed");
    }

    static std::string nameOf(const SoundGraph &graph, std::uint32_t id)
    {
        const auto node = std::ranges::find(graph.nodes, id, &GraphNode::id);
        return node == graph.nodes.end() ? std::string() : node->name;
    }

    Loads measureOurs()
    {
        const auto program = m_bed.session().start({TOLVENARY_MIX_RUNNER, std::to_string(m_bed.player()->pid())});
        awaitMix("com.tolvenary.", {"microphone", "player"}, 2);
        return measure({program->pid()});
    }

    Loads measureLoopbacks()
    {
        const LoopbackPair loopbacks(m_bed.session());
        awaitMix(LoopbackPair::nodeNames, {"microphone", "speakers"}, 4);
        return measure(loopbacks.processes());
    }

    static void report(const std::string &size, const std::vector<Round> &measured)
    {
        constexpr double percent = 100;
        row("whole path, " + size, "% core", 0.5, measured,
            [](const Load &load, const Load &nobody) { return percent * (load.mixers + load.server - nobody.server); });
        row("of it the mixing process, " + size, "% core", {}, measured,
            [](const Load &load, const Load &) { return percent * load.mixers; });
        row("of it the server's share, " + size, "% core", {}, measured,
            [](const Load &load, const Load &nobody) { return percent * (load.server - nobody.server); });
        row("wake-ups while it mixes, " + size, "1/s", {}, measured,
            [](const Load &load, const Load &) { return load.wakeUps; });
    }

    static void row(const std::string &work, const std::string &unit, std::optional<double> aim,
                    const std::vector<Round> &measured, double (*figure)(const Load &load, const Load &nobody))
    {
        bench::Row row{.part = "Processor time",
                       .work = work,
                       .beside = "two pw-loopback",
                       .unit = unit,
                       .ours = {},
                       .mostRatio = aim};
        for (const Round &round : measured) {
            row.ours.push_back(figure(round.ours, round.nobody));
            row.theirs.push_back(figure(round.theirs, round.nobody));
        }
        bench::report(row);
    }

    std::chrono::milliseconds m_measured;
    MixBed m_bed;
    Recorder m_recorder;
    std::array<std::vector<Round>, quanta.size()> m_rounds;
};

} // namespace

int main(int argc, char **argv)
{
    const double seconds = argc > 1 ? std::max(1.0, std::atof(argv[1])) : 30;
    try {
        Bench(std::chrono::milliseconds(static_cast<int>(1000 * seconds))).run();
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
