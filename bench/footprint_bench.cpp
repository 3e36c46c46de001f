// What the program with its window weighs and how often it wakes up, beside the patch bay that people keep open to do
// the same by hand: size of the binary, system calls until the window is there, wake-ups a second while it only stands
// there and while the mix runs. footprint_bench PROGRAM

#include "bench/process_meter.h"
#include "bench/report.h"
#include "tests/session/support/wait_until.h"
#include "tests/session/tools/demo_stage.h"

#include <cstdio>
#include <cstdlib>
#include <elf.h>
#include <fstream>
#include <stdexcept>

namespace
{

using namespace std::chrono_literals;
using namespace tolvenary;
using namespace tolvenary::session;
using bench::progress;
using Clock = std::chrono::steady_clock;

constexpr int rounds = 9;
constexpr const char *patchBay = "qpwgraph";
constexpr const char *part = "Footprint";

std::string pathOf(const std::string &program)
{
    const std::string found = runToEnd({"which", program});
    return found.substr(0, found.find('\n'));
}

/// Kilobytes that are loaded of the file: its code and data without what is there for debuggers.
double loadedKilobytes(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    Elf64_Ehdr header{};
    file.read(reinterpret_cast<char *>(&header), sizeof header);
    file.seekg(static_cast<std::streamoff>(header.e_phoff));
    double bytes = 0;
    for (int i = 0; i < header.e_phnum; ++i) {
        Elf64_Phdr segment{};
        file.read(reinterpret_cast<char *>(&segment), sizeof segment);
        if (segment.p_type == PT_LOAD)
            bytes += static_cast<double>(segment.p_filesz);
    }
    if (!file || bytes == 0)
        throw std::runtime_error(path + " is no program");
    return bytes / 1024;
}

/// A call that another thread's interrupts takes a second line in the tracer's log; a signal, one that is no call.
double callsIn(const std::filesystem::path &log)
{
    std::ifstream lines(log);
    double calls = 0;
    for (std::string line; std::getline(lines, line);)
        calls += line.find(" resumed>") == std::string::npos && line.find(" --- SIG") == std::string::npos ? 1 : 0;
    return calls;
}

/// Of all its threads, until its window is on the screen.
double systemCallsAtStart(PrivateSession &session, const std::string &program, const std::string &windowClass)
{
    const auto log = session.environment().root() / "calls";
    // The tracer steps aside, so that what is started here, and ended in the end, is the program.
    const auto traced = session.start({"strace", "-D", "-f", "-qq", "-o", log.string(), program});
    runToEnd({"xdotool", "search", "--sync", "--onlyvisible", "--class", windowClass}, 60s);
    return callsIn(log);
}

/// Times a second, of both in the same seconds.
void countWakeUps(pid_t ours, pid_t theirs, bench::Row &row)
{
    const double oursBefore = bench::wakeUps(ours);
    const double theirsBefore = bench::wakeUps(theirs);
    const auto begin = Clock::now();
    std::this_thread::sleep_for(1s);
    const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    row.ours.push_back((bench::wakeUps(ours) - oursBefore) / seconds);
    row.theirs.push_back((bench::wakeUps(theirs) - theirsBefore) / seconds);
}

void minimise(const std::string &windowClass)
{
    runToEnd({"xdotool", "search", "--onlyvisible", "--class", windowClass, "windowminimize", "--sync"});
}

bench::Row emptyRow(const std::string &work, const std::string &unit)
{
    return {.part = part, .work = work, .beside = patchBay, .unit = unit};
}

void run(int argc, char **argv, const std::string &program)
{
    bench::Row size = emptyRow("binary, as loaded", "kB");
    size.ours = {loadedKilobytes(program)};
    size.theirs = {loadedKilobytes(pathOf(patchBay))};
    bench::report(size);

    DemoStage stage(argc, argv, program, "");
    const auto other = stage.session().start({patchBay});
    runToEnd({"xdotool", "search", "--sync", "--onlyvisible", "--class", patchBay}, 60s);
    std::this_thread::sleep_for(2s);
    bench::Row idle = emptyRow("wake-ups, window in view, nothing runs", "1/s");
    bench::Row running = emptyRow("wake-ups, window in view, the mix runs", "1/s");
    for (int round = 0; round < rounds; ++round)
        countWakeUps(stage.program(), other->pid(), idle);
    stage.pressStart(1, 1);
    std::this_thread::sleep_for(2s);
    for (int round = 0; round < rounds; ++round)
        countWakeUps(stage.program(), other->pid(), running);
    minimise("tolvenary");
    minimise(patchBay);
    std::this_thread::sleep_for(2s);
    bench::Row runningAside = emptyRow("wake-ups, minimised, the mix runs", "1/s");
    for (int round = 0; round < rounds; ++round)
        countWakeUps(stage.program(), other->pid(), runningAside);
    stage.pressStop();
    std::this_thread::sleep_for(2s);
    bench::Row idleAside = emptyRow("wake-ups, minimised, nothing runs", "1/s");
    for (int round = 0; round < rounds; ++round)
        countWakeUps(stage.program(), other->pid(), idleAside);
    for (const bench::Row &row : {idle, idleAside, running, runningAside})
        bench::report(row);
}

void traceStarts(const std::string &program)
{
    PrivateSession session({.shippedDevice = true});
    const VirtualDisplay display(session);
    session.environment().set("QT_QPA_PLATFORM", "xcb");
    bench::Row calls = emptyRow("system calls until the window is there", "calls");
    for (int round = 1; round <= rounds; ++round) {
        progress("system calls at start, round " + std::to_string(round) + " of " + std::to_string(rounds));
        calls.ours.push_back(systemCallsAtStart(session, program, "tolvenary"));
        calls.theirs.push_back(systemCallsAtStart(session, patchBay, patchBay));
    }
    bench::report(calls);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: footprint_bench PROGRAM\n");
        return EXIT_FAILURE;
    }
    try {
        const std::string program = std::filesystem::absolute(argv[1]);
        traceStarts(program);
        run(argc, argv, program);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
