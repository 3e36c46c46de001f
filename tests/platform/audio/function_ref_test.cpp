#include "platform/function_ref.h"

#include <gtest/gtest.h>

#include <memory>

using tolvenary::FunctionRef;

TEST(FunctionRef, itCallsWhatItRefersTo)
{
    int calls = 0;
    const auto add = [&](int n) { return calls += n; };
    const FunctionRef<int(int)> ref = add;
    EXPECT_EQ(ref(2), 2);
    EXPECT_EQ(ref(3), 5);
    EXPECT_EQ(calls, 5);
}

TEST(FunctionRef, theCalleesOwnStateIsNotCopied)
{
    auto count = [n = 0]() mutable { return ++n; };
    const FunctionRef<int()> ref = count;
    ref();
    EXPECT_EQ(count(), 2);
}

TEST(FunctionRef, referencesAndMoveOnlyArgumentsPassThrough)
{
    const FunctionRef<int(std::unique_ptr<int>, int &)> ref = [](std::unique_ptr<int> in, int &out) {
        out = *in;
        return *in + 1;
    };
    int out = 0;
    EXPECT_EQ(ref(std::make_unique<int>(7), out), 8);
    EXPECT_EQ(out, 7);
}
