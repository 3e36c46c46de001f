// Processor time of the whole path from two sources into the device: the process that mixes and what the sound server
// has to do for it, beside two pw-loopback that do the same mix. What the server does anyway, for the sources and the
// speakers, is measured in every round too and taken off both. load_bench [SECONDS]: in all, for each of the two.

#include "bench/loopback_pair.h"
#include "bench/process_meter.h"
#include "bench/report.h"
#include "tests/session/mix_bed.h"

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

/// Three in turn: nobody mixes, we mix, the loopbacks mix.
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
            const auto ours = measureOurs();
            const auto theirs = measureLoopbacks();
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

    void awaitLinksInto(const char *node, std::size_t count)
    {
        const bool linked = m_bed.session().waitForGraph([&](const SoundGraph &graph) {
            const GraphNode *const device = graph.node(node);
            std::size_t links = 0;
            for (const GraphLink &link : graph.links)
                links += device != nullptr && link.inputNode == device->id && link.state == "active" ? 1 : 0;
            return links == count;
        });
        if (!linked)
            throw std::runtime_error("the device is not fed");
    }

    Loads measureOurs()
    {
        const auto program = m_bed.session().start({TOLVENARY_MIX_RUNNER, std::to_string(m_bed.player()->pid())});
        awaitLinksInto("blackhole_2ch", 2);
        return measure({program->pid()});
    }

    Loads measureLoopbacks()
    {
        const LoopbackPair loopbacks(m_bed.session());
        awaitLinksInto("blackhole_2ch", 4);
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
