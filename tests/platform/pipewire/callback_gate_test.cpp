#include "platform/pipewire/callback_gate.h"

#include <gtest/gtest.h>

namespace tolvenary
{
namespace
{

TEST(CallbackGate, aClosedGateLetsNobodyIn)
{
    CallbackGate gate;
    bool entered = false;
    EXPECT_FALSE(gate.pass([&] { entered = true; }));
    EXPECT_FALSE(entered);
}

TEST(CallbackGate, anOpenGateLetsTheCallbackIn)
{
    CallbackGate gate;
    gate.open();
    bool entered = false;
    EXPECT_TRUE(gate.pass([&] { entered = true; }));
    EXPECT_TRUE(entered);
}

// The callback writes a plain variable, which the other side takes away once the gate is closed: a callback that ran
// on, or came later, would be seen in its value, and as a data race under the thread sanitizer.
TEST(CallbackGate, whenCloseHasReturnedNoCallbackRunsOrFollows)
{
    CallbackGate gate;
    long owned = 0;
    std::atomic<bool> isOver = false;
    std::atomic<long> entries = 0;
    std::thread realTime([&] {
        while (!isOver.load()) {
            gate.pass([&] {
                owned += 1;
                entries.fetch_add(1);
            });
        }
    });
    for (int round = 0; round < 200; ++round) {
        const long before = entries.load();
        gate.open();
        while (entries.load() == before)
            std::this_thread::yield();
        gate.close();
        owned = -1000;
        const long entered = entries.load();
        std::this_thread::yield();
        ASSERT_EQ(owned, -1000);
        ASSERT_EQ(entries.load(), entered);
    }
    isOver.store(true);
    realTime.join();
}

} // namespace
} // namespace tolvenary
