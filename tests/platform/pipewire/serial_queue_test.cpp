#include "platform/pipewire/serial_queue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <vector>

using namespace tolvenary;

namespace
{

std::optional<std::chrono::nanoseconds> never()
{
    return std::nullopt;
}

} // namespace

TEST(SerialQueue, tasksRunInTheirOrderOnOneThreadThatIsNotTheCallers)
{
    std::vector<int> order;
    std::vector<std::thread::id> threads;
    {
        SerialQueue queue(never);
        for (int i = 0; i < 100; ++i) {
            queue.async([&, i] {
                order.push_back(i);
                threads.push_back(std::this_thread::get_id());
            });
        }
    }
    ASSERT_EQ(order.size(), 100U);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
    EXPECT_THAT(threads, testing::Each(threads.front()));
    EXPECT_NE(threads.front(), std::this_thread::get_id());
}

TEST(SerialQueue, whatWasGivenIsRunBeforeTheEnd)
{
    std::promise<void> gate;
    bool last = false;
    std::thread opener;
    {
        SerialQueue queue(never);
        queue.async([&] { gate.get_future().wait(); });
        queue.async([&] { last = true; });
        opener = std::thread([&] { gate.set_value(); });
    }
    EXPECT_TRUE(last);
    opener.join();
}

TEST(SerialQueue, aTaskMayGiveAnother)
{
    std::promise<int> answer;
    {
        SerialQueue queue(never);
        queue.async([&] { queue.async([&] { answer.set_value(42); }); });
        EXPECT_EQ(answer.get_future().get(), 42);
    }
}

TEST(SerialQueue, itLooksAgainAndAgainAtThePauseAskedFor)
{
    std::atomic<int> looks = 0;
    std::promise<void> ten;
    const SerialQueue queue([&]() -> std::optional<std::chrono::nanoseconds> {
        if (++looks == 10)
            ten.set_value();
        return std::chrono::nanoseconds(1000);
    });
    EXPECT_EQ(ten.get_future().wait_for(std::chrono::seconds(30)), std::future_status::ready);
}

TEST(SerialQueue, withoutAPauseItLooksOnlyAfterATask)
{
    std::atomic<int> looks = 0;
    std::promise<void> first;
    std::promise<void> second;
    SerialQueue queue([&]() -> std::optional<std::chrono::nanoseconds> {
        if (++looks == 1)
            first.set_value();
        else if (looks == 2)
            second.set_value();
        return std::nullopt;
    });
    first.get_future().wait();
    auto again = second.get_future();
    EXPECT_EQ(again.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    queue.async([] {});
    EXPECT_EQ(again.wait_for(std::chrono::seconds(30)), std::future_status::ready);
}

// Again and again, so that some of the tasks come while the queue is waiting.
TEST(SerialQueue, aTaskDoesNotWaitForALongPause)
{
    SerialQueue queue([]() -> std::optional<std::chrono::nanoseconds> { return std::chrono::hours(1); });
    for (int i = 0; i < 500; ++i) {
        const auto ran = std::make_shared<std::promise<void>>();
        queue.async([ran] { ran->set_value(); });
        ASSERT_EQ(ran->get_future().wait_for(std::chrono::seconds(30)), std::future_status::ready) << i;
    }
}

TEST(SerialQueue, whatATaskHoldsIsLetGoOfWhenItHasRun)
{
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> watched = held;
    std::promise<bool> expired;
    SerialQueue queue(never);
    queue.async([held = std::move(held)] {});
    queue.async([&] { expired.set_value(watched.expired()); });
    EXPECT_TRUE(expired.get_future().get());
}
