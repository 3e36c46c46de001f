#include "tests/session/mix_bed.h"

#include <fstream>
#include <gtest/gtest.h>
#include <malloc.h>

namespace tolvenary::session
{

namespace
{

std::size_t entries(const char *directory)
{
    const std::filesystem::directory_iterator all(directory);
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

/// What the process holds, as the kernel and the sound server see it.
struct Holdings {
    std::size_t threads;
    std::size_t descriptors;
    std::size_t serverObjects;
    long kilobytes;
};

Holdings holdings()
{
    const SoundGraph graph = SoundGraph::read();
    malloc_trim(0);
    std::ifstream statm("/proc/self/statm");
    long size = 0;
    long resident = 0;
    statm >> size >> resident;
    return {entries("/proc/self/task"), entries("/proc/self/fd"),
            graph.nodes.size() + graph.ports.size() + graph.links.size(), resident * 4};
}

void print(const char *when, const Holdings &now)
{
    std::printf("  %s: %zu threads, %zu descriptors, %zu objects in the server, %ld kB\n", when, now.threads,
                now.descriptors, now.serverObjects, now.kilobytes);
}

} // namespace

TEST(Restarts, aHundredLeaveNothingBehind)
{
    MixBed bed;
    bed.launch();
    const std::size_t objectsBefore = holdings().serverObjects;
    Holdings afterTen{};
    for (int i = 1; i <= 100; ++i) {
        bed.start();
        ASSERT_TRUE(bed.isRunning()) << "start " << i << ": " << bed.status();
        bed.stop();
        if (i == 10) {
            // The nodes go a moment after the stop has returned.
            EXPECT_TRUE(bed.waitFor([&] { return holdings().serverObjects == objectsBefore; }));
            afterTen = holdings();
        }
    }
    EXPECT_TRUE(bed.waitFor([&] { return holdings().serverObjects == objectsBefore; }));
    const Holdings afterAll = holdings();
    print("after  10", afterTen);
    print("after 100", afterAll);
    EXPECT_EQ(afterAll.threads, afterTen.threads);
    EXPECT_EQ(afterAll.descriptors, afterTen.descriptors);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // which keep what is freed
    EXPECT_LT(afterAll.kilobytes - afterTen.kilobytes, 1024);
#endif
}

} // namespace tolvenary::session
