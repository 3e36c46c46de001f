#pragma once

#include <gtest/gtest.h>

namespace tolvenary::test
{

/// Fails the test during which Qt or the QML engine warns of anything: a binding that finds nothing, a loop, a missing
/// image. One for a test program, handed to the listeners of the test framework, which own it.
class WarningWatch : public testing::EmptyTestEventListener
{
  public:
    void OnTestStart(const testing::TestInfo &test) override;
    void OnTestEnd(const testing::TestInfo &test) override;
};

/// Lets warnings fail the tests of this program from now on.
void failOnWarnings();

} // namespace tolvenary::test
