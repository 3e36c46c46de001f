#include "core/answer.h"

#include "platform/fake/fake_answer.h"
#include "tests/core/event_loop.h"

#include <QThread>
#include <gtest/gtest.h>
#include <qcoro/qcorotask.h>

#include <memory>
#include <thread>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

struct Outcome {
    int value = 0;
    QThread *thread = nullptr;
};

QCoro::Task<void> ask(FakeAnswer<int> &source, std::shared_ptr<Outcome> outcome)
{
    const int value = co_await answer<int>([&](auto handler) { source.request(handler); });
    *outcome = {value, QThread::currentThread()};
}

} // namespace

TEST(Answer, anAnswerGivenAtOnceDoesNotWait)
{
    FakeAnswer<int> source(7);
    const auto outcome = std::make_shared<Outcome>();
    ask(source, outcome);
    EXPECT_EQ(outcome->value, 7);
}

TEST(Answer, aLaterAnswerContinuesInTheEventLoop)
{
    FakeAnswer<int> source(7);
    source.holdBack();
    const auto outcome = std::make_shared<Outcome>();
    ask(source, outcome);
    EXPECT_EQ(outcome->value, 0);
    source.deliver();
    EXPECT_TRUE(waitUntil([&] { return outcome->value == 7; }));
}

TEST(Answer, anAnswerFromAnotherThreadContinuesOnTheMainThread)
{
    FakeAnswer<int> source(7);
    source.holdBack();
    const auto outcome = std::make_shared<Outcome>();
    ask(source, outcome);
    std::thread([&] { source.deliver(); }).join();
    EXPECT_EQ(outcome->value, 0) << "not yet: the main thread was not asked to go on";
    ASSERT_TRUE(waitUntil([&] { return outcome->value == 7; }));
    EXPECT_EQ(outcome->thread, QThread::currentThread());
}
