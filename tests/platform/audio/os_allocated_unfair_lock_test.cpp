#include "platform/audio/os_allocated_unfair_lock.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <dlfcn.h>
#include <pthread.h>
#include <thread>

using namespace tolvenary;

namespace
{

int protocolAskedFor = PTHREAD_PRIO_NONE;

} // namespace

/// A mutex does not tell its protocol, and to see it at work takes real-time rights: so it is heard when it is set.
extern "C" int pthread_mutexattr_setprotocol(pthread_mutexattr_t *attributes, int protocol) noexcept
{
    using Function = int (*)(pthread_mutexattr_t *, int);
    protocolAskedFor = protocol;
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, "pthread_mutexattr_setprotocol"))(attributes, protocol);
}

namespace
{

struct Counts {
    std::uint64_t mic = 0;
    std::uint64_t app = 0;
};

} // namespace

TEST(OSAllocatedUnfairLock, theClosureSeesAndChangesTheState)
{
    OSAllocatedUnfairLock<Counts> lock({3, 4});
    lock.withLock([](Counts &counts) { counts.mic += 10; });
    EXPECT_EQ(lock.withLock([](Counts &counts) { return counts.mic; }), 13U);
    EXPECT_EQ(lock.withLock([](Counts &counts) { return counts.app; }), 4U);
}

TEST(OSAllocatedUnfairLock, aPairIsNeverReadHalfChanged)
{
    OSAllocatedUnfairLock<Counts> lock;
    constexpr std::uint64_t rounds = 50000;
    const auto add = [&] {
        for (std::uint64_t i = 0; i < rounds; ++i)
            lock.withLock([](Counts &counts) {
                ++counts.mic;
                ++counts.app;
            });
    };
    std::uint64_t torn = 0;
    {
        const std::jthread first(add);
        const std::jthread second(add);
        for (std::uint64_t i = 0; i < rounds; ++i) {
            const Counts counts = lock.withLock([](Counts &state) { return state; });
            torn += counts.mic != counts.app ? 1 : 0;
        }
    }
    EXPECT_EQ(torn, 0U);
    EXPECT_EQ(lock.withLock([](Counts &counts) { return counts.mic; }), 2 * rounds);
}

TEST(OSAllocatedUnfairLock, aClosureThatThrowsLeavesItUnlocked)
{
    OSAllocatedUnfairLock<Counts> lock;
    EXPECT_THROW(lock.withLock([](Counts &) { throw 1; }), int);
    EXPECT_EQ(lock.withLock([](Counts &counts) { return counts.mic; }), 0U);
}

TEST(OSAllocatedUnfairLock, whoWaitsLendsItsPriorityToWhoHoldsIt)
{
    protocolAskedFor = PTHREAD_PRIO_NONE;
    OSAllocatedUnfairLock<Counts> lock;
    EXPECT_EQ(protocolAskedFor, PTHREAD_PRIO_INHERIT);
    EXPECT_EQ(lock.withLock([](Counts &counts) { return counts.mic; }), 0U);
}
