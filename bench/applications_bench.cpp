// What one application more costs in each cycle: processor time of our process and of the sound server, beside the same
// links into pw-loopback. Rounds are interleaved; what counts is the ratio of the slopes.
// applications_bench PROGRAM PLAYER [ROUNDS]

#include "bench/process_meter.h"
#include "bench/report.h"
#include "tests/session/support/sound_players.h"
#include "tests/session/support/virtual_devices.h"
#include "tests/session/support/wait_until.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <thread>

namespace
{

using namespace std::chrono_literals;
using namespace tolvenary::session;
using namespace tolvenary::bench;

constexpr std::array counts = {1, 10, 100, 200};
/// A port of the server adds up 128 links. It takes so many loopbacks for the most applications, and there are as many
/// for fewer, so that what differs are the applications.
constexpr int loopbacks = 2;
constexpr auto measured = 4s;
constexpr double cyclesMeasured = 4.0 * 48000 / 1024;

double processorMicroseconds(pid_t process)
{
    return 1e6 * scheduledSeconds(process);
}

/// Of the main thread alone, where a server does what is not a matter of each cycle.
double mainThreadMicroseconds(pid_t process)
{
    const std::string number = std::to_string(process);
    double nanoseconds = 0;
    std::ifstream("/proc/" + number + "/task/" + number + "/schedstat") >> nanoseconds;
    return nanoseconds / 1000;
}

struct Cost {
    double process = 0; ///< microseconds a cycle
    double server = 0;
};

std::string describe(const Cost &cost)
{
    return std::to_string(std::lround(cost.process)) + ", server " + std::to_string(std::lround(cost.server));
}

/// Where hundreds have just come the session manager and the server go on linking for many seconds.
void awaitQuiet(const PrivateSession &session)
{
    const auto spent = [&] {
        return mainThreadMicroseconds(session.sessionManager()) + mainThreadMicroseconds(session.soundServer());
    };
    const auto isQuiet = [&] {
        const double before = spent();
        std::this_thread::sleep_for(1s);
        return spent() - before < 50'000;
    };
    if (!waitUntil(isQuiet, 180s))
        throw std::runtime_error("the servers come to no rest");
}

Cost measure(const PrivateSession &session, const std::vector<pid_t> &processes)
{
    awaitQuiet(session);
    const auto all = [&] {
        double sum = 0;
        for (const pid_t process : processes)
            sum += processorMicroseconds(process);
        return sum;
    };
    const double process = all();
    const double server = processorMicroseconds(session.soundServer());
    std::this_thread::sleep_for(measured);
    return {(all() - process) / cyclesMeasured,
            (processorMicroseconds(session.soundServer()) - server) / cyclesMeasured};
}

/// Output ports of the many, as node ids and port ids; those of one node behind each other.
std::map<std::uint32_t, std::vector<std::uint32_t>> portsOfMany(const SoundGraph &graph)
{
    std::map<std::uint32_t, std::vector<std::uint32_t>> ports;
    for (const GraphNode &node : graph.nodes) {
        if (node.name != "one-of-many")
            continue;
        for (const GraphPort &port : graph.portsOf(node.id))
            if (!port.isInput)
                ports[node.id].push_back(port.id);
    }
    return ports;
}

std::unique_ptr<ChildProcess> playMany(PrivateSession &session, const std::string &player, int count)
{
    auto many = session.start(
        {player, "--name", "one-of-many", "--streams", std::to_string(count), "FL=steady:0.001", "FR=steady:0.001"});
    const auto areThere = [&](const SoundGraph &graph) {
        const auto ports = portsOfMany(graph);
        return ports.size() == static_cast<std::size_t>(count) &&
               std::ranges::all_of(ports, [](const auto &entry) { return entry.second.size() == 2; });
    };
    if (!session.waitForGraph(areThere, 60s))
        throw std::runtime_error("not all play: " + many->output());
    return many;
}

/// Waits until that many of the streams' ports play into nodes of these names' beginning.
void awaitLinks(PrivateSession &session, const std::string &into, int count)
{
    const auto areLinked = [&](const SoundGraph &graph) {
        std::set<std::uint32_t> targets;
        for (const GraphNode &node : graph.nodes)
            if (node.name.starts_with(into))
                targets.insert(node.id);
        std::set<std::uint32_t> players;
        for (const auto &[node, ports] : portsOfMany(graph))
            players.insert(node);
        const auto linked = std::ranges::count_if(graph.links, [&](const GraphLink &link) {
            return targets.contains(link.inputNode) && players.contains(link.outputNode);
        });
        return linked >= 2L * count;
    };
    if (!session.waitForGraph(areLinked, 60s))
        throw std::runtime_error("not all are linked into " + into);
}

Cost measureOurs(PrivateSession &session, const std::string &program, pid_t pick, int count)
{
    const auto runner = session.start({program, std::to_string(pick)});
    awaitLinks(session, "com.tolvenary.tap", count);
    return measure(session, {runner->pid()});
}

Cost measurePeer(PrivateSession &session, int count)
{
    std::vector<std::unique_ptr<ChildProcess>> peers;
    std::vector<pid_t> processes;
    for (int i = 0; i < loopbacks; ++i) {
        const std::string name = "peer-" + std::to_string(i);
        peers.push_back(
            session.start({"pw-loopback", "--capture-props={ node.name=" + name + " node.autoconnect=false }",
                           "--playback-props={ node.name=" + name + "-out target.object=blackhole_2ch }"}));
        processes.push_back(peers.back()->pid());
        session.waitForGraph([&](const SoundGraph &graph) { return graph.port(name + ":input_FR") != nullptr; });
    }
    const SoundGraph graph = SoundGraph::read();
    int index = 0;
    for (const auto &[node, ports] : portsOfMany(graph)) {
        const std::string name = "peer-" + std::to_string(index++ % loopbacks);
        for (std::size_t side = 0; side < ports.size(); ++side)
            runToEnd({"pw-link", std::to_string(ports[side]),
                      std::to_string(graph.port(name + (side == 0 ? ":input_FL" : ":input_FR"))->id)});
    }
    awaitLinks(session, "peer-", count);
    return measure(session, processes);
}

/// Microseconds that each application adds, by least squares over the counts.
double slope(const std::vector<double> &costs)
{
    double x = 0;
    double y = 0;
    double xx = 0;
    double xy = 0;
    for (std::size_t i = 0; i < costs.size(); ++i) {
        x += counts[i];
        y += costs[i];
        xx += static_cast<double>(counts[i]) * counts[i];
        xy += counts[i] * costs[i];
    }
    const auto n = static_cast<double>(costs.size());
    return (n * xy - x * y) / (n * xx - x * x);
}

/// Of each round, the cost at each count.
using Rounds = std::vector<std::vector<Cost>>;

std::vector<double> ofEach(const Rounds &rounds, const std::function<double(const std::vector<Cost> &)> &figure)
{
    std::vector<double> figures;
    for (const std::vector<Cost> &costs : rounds)
        figures.push_back(figure(costs));
    return figures;
}

void reportFigure(const std::string &work, const Rounds &ours, const Rounds &peer, std::optional<double> mostRatio,
                  const std::function<double(const std::vector<Cost> &)> &figure)
{
    report({.part = "Applications",
            .work = work,
            .beside = "the same links into pw-loopback",
            .unit = "µs",
            .ours = ofEach(ours, figure),
            .theirs = ofEach(peer, figure),
            .mostRatio = mostRatio});
}

void reportAll(const char *whose, double Cost::*cost, const Rounds &ours, const Rounds &peer)
{
    reportFigure(std::string("one application more in each cycle, ") + whose, ours, peer, 1.0, [&](const auto &costs) {
        std::vector<double> figures;
        std::ranges::transform(costs, std::back_inserter(figures), cost);
        return slope(figures);
    });
    // The same from one to so many: that no application costs more because others are there.
    for (std::size_t i = 1; i < counts.size(); ++i) {
        reportFigure("of " + std::to_string(counts[i]) + " applications each, " + whose, ours, peer, std::nullopt,
                     [&](const auto &costs) { return (costs[i].*cost - costs[0].*cost) / (counts[i] - counts[0]); });
    }
}

void run(const std::string &program, const std::string &player, int rounds)
{
    PrivateSession session;
    session.makeClientsUrgent();
    const auto device = makeBlackHole(session, DeviceKind::nullSink);
    const auto microphone = makeMicrophone(session);
    const auto voice = speakInto(session, "microphone", {"MONO=steady:0.25"});
    Rounds ours;
    Rounds peer;
    for (int round = 0; round < rounds; ++round) {
        std::vector<Cost> costsOfOurs;
        std::vector<Cost> costsOfPeer;
        for (const int count : counts) {
            const auto many = playMany(session, player, count);
            const bool oursFirst = round % 2 == 0;
            if (oursFirst)
                costsOfOurs.push_back(measureOurs(session, program, many->pid(), count));
            costsOfPeer.push_back(measurePeer(session, count));
            if (!oursFirst)
                costsOfOurs.push_back(measureOurs(session, program, many->pid(), count));
            progress(std::to_string(count) + " applications, µs a cycle: ours " + describe(costsOfOurs.back()) +
                     "; pw-loopback " + describe(costsOfPeer.back()));
        }
        ours.push_back(costsOfOurs);
        peer.push_back(costsOfPeer);
    }
    reportAll("process", &Cost::process, ours, peer);
    reportAll("server", &Cost::server, ours, peer);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s PROGRAM PLAYER [ROUNDS]\n", argv[0]);
        return 2;
    }
    try {
        run(argv[1], argv[2], argc > 3 ? std::atoi(argv[3]) : 9);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
