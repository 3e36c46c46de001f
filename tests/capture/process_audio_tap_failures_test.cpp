#include "tests/capture/tap_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::ElementsAreArray;

namespace
{

using Calls = std::vector<std::string>;

const Calls releaseOfTap{"AudioHardwareDestroyProcessTap"};
const Calls releaseOfAggregate{"AudioHardwareDestroyAggregateDevice", "AudioHardwareDestroyProcessTap"};

struct FailingStep {
    const char *name;
    const char *operation;
    const char *description;
    Calls releases;
};

class ProcessAudioTapSetupFailure : public TapTest, public testing::WithParamInterface<FailingStep>
{
};

/// The calls behind the last one of `operation`.
Calls callsAfter(const Calls &log, const std::string &operation)
{
    const auto last = std::find(log.rbegin(), log.rend(), operation);
    return {last.base(), log.end()};
}

} // namespace

TEST_P(ProcessAudioTapSetupFailure, itEndsTheSetupWithItsTextAndReleasesWhatWasMade)
{
    calls().fail(GetParam().operation, -50);
    const auto tap = create();
    ASSERT_FALSE(tap);
    EXPECT_EQ(tap.error(), (Error{"NSOSStatusErrorDomain", -50, GetParam().description}));
    EXPECT_THAT(callsAfter(calls().log(), GetParam().operation), ElementsAreArray(GetParam().releases));
    EXPECT_FALSE(m_platform.holdsAnything());
}

INSTANTIATE_TEST_SUITE_P(
    Step, ProcessAudioTapSetupFailure,
    testing::Values(FailingStep{"translation",
                                "AudioObjectGetPropertyData id2p",
                                "TranslatePIDToProcessObject failed for pid 4242 (OSStatus -50).",
                                {}},
                    FailingStep{
                        "processTap",
                        "AudioHardwareCreateProcessTap",
                        "AudioHardwareCreateProcessTap failed (OSStatus -50). Likely TCC: grant Audio Capture (Screen "
                        "Recording) and relaunch.",
                        {}},
                    FailingStep{"tapUID", "AudioObjectGetPropertyData tuid",
                                "Failed to read CFString property (OSStatus -50).", releaseOfTap},
                    FailingStep{"aggregateDevice", "AudioHardwareCreateAggregateDevice",
                                "AudioHardwareCreateAggregateDevice failed (OSStatus -50).", releaseOfTap},
                    FailingStep{"streamFormat", "AudioObjectGetPropertyData sfmt",
                                "Failed to read aggregate stream format (OSStatus -50).", releaseOfAggregate},
                    FailingStep{"ioProc", "AudioDeviceCreateIOProcIDWithBlock",
                                "AudioDeviceCreateIOProcIDWithBlock failed (OSStatus -50).", releaseOfAggregate}),
    [](const auto &param) { return std::string(param.param.name); });

namespace
{

class ProcessAudioTapFailure : public TapTest
{
};

} // namespace

TEST_F(ProcessAudioTapFailure, theFirstProcessThatCannotBeTranslatedEndsTheSetup)
{
    calls().failCall("AudioObjectGetPropertyData id2p", 2, -3);
    const auto tap = create({7, -8, 9});
    ASSERT_FALSE(tap);
    EXPECT_EQ(tap.error().localizedDescription, "TranslatePIDToProcessObject failed for pid -8 (OSStatus -3).");
    EXPECT_EQ(calls().count("AudioObjectGetPropertyData id2p"), 2);
    EXPECT_EQ(calls().count("AudioHardwareCreateProcessTap"), 0);
}

TEST_F(ProcessAudioTapFailure, aTapThatIsReportedMadeButIsNoneFailsWithCode0)
{
    m_platform.processTaps().setMakesNothing(true);
    const auto tap = create();
    ASSERT_FALSE(tap);
    EXPECT_EQ(tap.error(), (Error{"NSOSStatusErrorDomain", 0,
                                  "AudioHardwareCreateProcessTap failed (OSStatus 0). Likely TCC: grant Audio Capture "
                                  "(Screen Recording) and relaunch."}));
    EXPECT_EQ(calls().count("AudioHardwareDestroyProcessTap"), 0);
}

TEST_F(ProcessAudioTapFailure, anAggregateDeviceThatIsReportedMadeButIsNoneFailsWithCode0)
{
    m_platform.aggregateDevices().setMakesNothing(true);
    const auto tap = create();
    ASSERT_FALSE(tap);
    EXPECT_EQ(tap.error(),
              (Error{"NSOSStatusErrorDomain", 0, "AudioHardwareCreateAggregateDevice failed (OSStatus 0)."}));
    EXPECT_FALSE(m_platform.holdsAnything());
}

TEST_F(ProcessAudioTapFailure, anIOProcThatIsReportedMadeButIsNoneFailsWithCode0)
{
    m_platform.ioProcs().setMakesNothing(true);
    const auto tap = create();
    ASSERT_FALSE(tap);
    EXPECT_EQ(tap.error(),
              (Error{"NSOSStatusErrorDomain", 0, "AudioDeviceCreateIOProcIDWithBlock failed (OSStatus 0)."}));
    EXPECT_EQ(calls().count("AudioDeviceDestroyIOProcID"), 0);
    EXPECT_FALSE(m_platform.holdsAnything());
}

TEST_F(ProcessAudioTapFailure, aStartThatFailsLeavesTheTapReadyToBeStartedAgain)
{
    const auto tap = create();
    calls().failCall("AudioDeviceStart", 1, -16);
    const auto started = (*tap)->start();
    ASSERT_FALSE(started);
    EXPECT_EQ(started.error(), (Error{"NSOSStatusErrorDomain", -16, "AudioDeviceStart failed (OSStatus -16)."}));
    EXPECT_FALSE((*tap)->isRunning());

    EXPECT_TRUE((*tap)->start());
    EXPECT_TRUE((*tap)->isRunning());
}

TEST_F(ProcessAudioTapFailure, aTapWhoseStartFailedIsNotStoppedButReleased)
{
    {
        const auto tap = create();
        calls().fail("AudioDeviceStart", -16);
        ASSERT_FALSE((*tap)->start());
    }
    EXPECT_EQ(calls().count("AudioDeviceStop"), 0);
    EXPECT_FALSE(m_platform.holdsAnything());
}
