// Processor time of the whole path from two sources into the device: the process that mixes and what the sound server
// has to do for it, beside two pw-loopback that do the same mix. What the server does anyway, for the sources and the
// speakers, is measured in every round too, and the median is taken off both. load_bench [SECONDS]: in all, for each of
// the two.

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

/// Three in turn: nobody mixes, we mix, the loopbacks mix; in every second round the loopbacks before us.
struct Round {
    Load nobody;
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
    explicit Bench(std::chrono::milliseconds measured) : m_measured(measured), m_bed(options()) {}

    void run()
    {
        for (int number = 1; number <= rounds; ++number) {
            progress("processor time, round " + std::to_string(number) + " of " + std::to_string(rounds));
            const auto nobody = measure({});
            const bool weFirst = number % 2 == 1;
            auto ours = weFirst ? measureOurs() : Loads{};
            const auto theirs = measureLoopbacks();
            if (!weFirst)
                ours = measureOurs();
            for (std::size_t i = 0; i < quanta.size(); ++i)
                m_rounds[i].push_back({nobody[i], ours[i], theirs[i]});
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

    Load measureOnce(const Processes &mixers)
    {
        const Processes server{m_bed.session().soundServer()};
        const double mixersBefore = total(mixers, bench::scheduledSeconds);
        const double serverBefore = total(server, bench::scheduledSeconds);
        const double wakeUpsBefore = total(mixers, bench::wakeUps);
        const auto begin = Clock::now();
        std::this_thread::sleep_for(m_measured);
        const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
        return {(total(mixers, bench::scheduledSeconds) - mixersBefore) / seconds,
                (total(server, bench::scheduledSeconds) - serverBefore) / seconds,
                (total(mixers, bench::wakeUps) - wakeUpsBefore) / seconds};
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
        const Load nobody = medianOfNobody(measured);
        for (const Round &round : measured) {
            row.ours.push_back(figure(round.ours, nobody));
            row.theirs.push_back(figure(round.theirs, nobody));
        }
        bench::report(row);
    }

    /// It is the same for both in every round, and a slip in one of its rounds would be one in the ratio.
    static Load medianOfNobody(const std::vector<Round> &measured)
    {
        std::vector<double> servers;
        servers.reserve(measured.size());
        for (const Round &round : measured)
            servers.push_back(round.nobody.server);
        return {.mixers = 0, .server = bench::spread(servers).median, .wakeUps = 0};
    }

    std::chrono::milliseconds m_measured;
    MixBed m_bed;
    std::array<std::vector<Round>, quanta.size()> m_rounds;
};

} // namespace

int main(int argc, char **argv)
{
    const double seconds = argc > 1 ? std::max(1.0, std::atof(argv[1])) : 30;
    try {
        Bench(std::chrono::milliseconds(static_cast<int>(1000 * seconds / rounds))).run();
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
