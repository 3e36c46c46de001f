#include "tests/session/callback_watch.h"
#include "tests/session/mix_bed.h"

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <mutex>
#include <sched.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tolvenary::session
{

namespace
{

CallbackCounts countsOf(const std::function<void()> &body)
{
    beginCounting();
    {
        const PretendedCallback callback;
        body();
    }
    return endCounting();
}

const int nowhere = open("/dev/null", O_RDWR);

} // namespace

TEST(CallbackWatch, countsWhatItIsThereFor)
{
    beginCounting();
    {
        const PretendedCallback callback;
        std::mutex first;
        std::mutex second;
        for (std::mutex *mutex : {&first, &second, &first})
            const std::scoped_lock lock(*mutex);
        const auto memory = std::make_unique<std::vector<int>>(10);
        EXPECT_EQ(memory->size(), 10U);
    }
    const std::vector<int> notCounted(10);
    const CallbackCounts counts = endCounting();
    EXPECT_EQ(counts.callbacks, 1U);
    EXPECT_EQ(counts.allocations, 2U);
    EXPECT_EQ(counts.frees, 2U);
    EXPECT_EQ(counts.locks, 3U);
    EXPECT_EQ(counts.mutexes, 2U);
}

TEST(CallbackWatch, countsWaitsAndSystemCalls)
{
    const CallbackCounts waiting = countsOf([] { std::this_thread::sleep_for(std::chrono::nanoseconds(1)); });
    EXPECT_EQ(waiting.waits, 1U);
    EXPECT_EQ(waiting.systemCalls, 0U);
    const CallbackCounts writing = countsOf([] { EXPECT_EQ(write(nowhere, "x", 1), 1); });
    EXPECT_EQ(writing.waits, 0U);
    EXPECT_EQ(writing.systemCalls, 1U);
    const CallbackCounts neither = countsOf([] {});
    EXPECT_EQ(neither.waits + neither.systemCalls, 0U);
}

TEST(CallbackWatch, seesWhatTheLibrariesCallByThemselves)
{
    if (!seesEverySystemCall())
        GTEST_SKIP() << "this kernel or processor does not show a program its system calls: only some are counted";
    std::FILE *log = std::fopen("/dev/null", "w");
    std::setvbuf(log, nullptr, _IONBF, 0);
    std::ofstream stream("/dev/null");
    std::mutex mutex;
    std::condition_variable condition;
    int number = -1;
    int waiting = 0;
    const std::vector<std::pair<const char *, std::function<void()>>> calls = {
        {"fprintf", [&] { std::fprintf(log, "x"); }},
        {"a C++ stream", [&] { stream << "x" << std::flush; }},
        {"open", [&] { number = open("/dev/null", O_RDONLY); }},
        {"ioctl", [&] { ioctl(number, FIONREAD, &waiting); }},
        {"close", [&] { close(number); }},
        {"lseek", [&] { lseek(nowhere, 0, SEEK_SET); }},
        {"fsync", [&] { fsync(nowhere); }},
        {"sched_yield", [&] { sched_yield(); }},
    };
    for (const auto &[name, call] : calls) {
        const CallbackCounts counts = countsOf(call);
        EXPECT_EQ(counts.systemCalls, 1U) << name;
        EXPECT_EQ(counts.waits, 0U) << name;
    }
    const std::vector<std::pair<const char *, std::function<void()>>> waits = {
        {"usleep", [&] { usleep(1); }},
        {"a condition variable",
         [&] {
             std::unique_lock lock(mutex);
             condition.wait_for(lock, std::chrono::microseconds(1));
         }},
    };
    for (const auto &[name, wait] : waits)
        EXPECT_EQ(countsOf(wait).waits, 1U) << name;
    std::fclose(log);
}

/// Frames a second of the graph: away from 48000 the converters are in the callbacks too.
class RealTime : public testing::TestWithParam<int>
{
};

TEST_P(RealTime, theCallbacksNeitherAllocateNorFreeNorLockNorCallTheSystem)
{
    MixBedOptions options;
    options.configuration.rate = GetParam();
    MixBed bed(options);
    bed.run();
    bed.waitFor([] { return false; }, std::chrono::seconds(1));
    beginCounting();
    bed.waitFor([] { return false; }, std::chrono::seconds(10));
    const CallbackCounts counts = endCounting();
    std::printf("  %d Hz, 10 seconds, %lu callbacks: %lu allocations, %lu frees, %lu locks of %zu mutex (the frame "
                "counters', %lu times held by another), %lu waits, %lu system calls%s; %lu callbacks of the sign\n",
                GetParam(), counts.callbacks, counts.allocations, counts.frees, counts.locks, counts.mutexes,
                counts.contendedLocks, counts.waits, counts.systemCalls,
                seesEverySystemCall() ? "" : " (of those that can be seen here)", counts.streamCallbacks);
    EXPECT_GT(counts.callbacks, 1000U);
    EXPECT_GT(counts.streamCallbacks, 100U) << "the sign's stream is not watched";
    EXPECT_EQ(counts.allocations, 0U);
    EXPECT_EQ(counts.frees, 0U);
    EXPECT_EQ(counts.mutexes, 1U) << "more than the frame counters' one is locked";
    EXPECT_LE(counts.locks, counts.callbacks * 2 / 3 + 2) << "one lock a captured block";
    EXPECT_EQ(counts.waits, 0U);
    EXPECT_EQ(counts.systemCalls, 0U);
}

INSTANTIATE_TEST_SUITE_P(Graph, RealTime, testing::Values(48000, 44100),
                         [](const auto &rate) { return std::to_string(rate.param); });

} // namespace tolvenary::session
