#include "platform/pipewire/microphone_change.h"
#include "platform/pipewire/microphone_ports.h"

#include <gtest/gtest.h>

using namespace tolvenary;

namespace
{

constexpr GlobalId first = 40;
constexpr GlobalId second = 50;
constexpr GlobalId third = 60;

MicrophoneChange::Time at(double seconds)
{
    return MicrophoneChange::Time(seconds);
}

/// Ports of one channel, and what comes in at their two sets in a cycle.
struct OneChannel {
    MicrophonePorts ports{1};

    std::vector<float> hear(const std::vector<float> *set0, const std::vector<float> *set1)
    {
        const auto pointer = [](const std::vector<float> *samples) {
            return samples == nullptr ? nullptr : const_cast<float *>(samples->data());
        };
        const std::array<void *, 2> buffers{pointer(set0), pointer(set1)};
        const auto channels = ports.hear(Cycle(buffers, {}, 4));
        return channels.empty() ? std::vector<float>() : std::vector<float>(channels[0], channels[0] + 4);
    }
};

const std::vector<float> ones(4, 1);
const std::vector<float> twos(4, 2);

} // namespace

TEST(MicrophoneChange, theFirstMicrophoneIsHeardAtTheFirstSet)
{
    MicrophoneChange change;
    change.observe(first, 0, at(0));
    EXPECT_EQ(change.set(), 0U);
    EXPECT_FALSE(change.leaving());
}

TEST(MicrophoneChange, theOneBeforeStaysUntilTheNewOneIsHeard)
{
    MicrophoneChange change;
    change.observe(first, 0, at(0));
    change.observe(second, 0, at(1));
    EXPECT_EQ(change.set(), 1U);
    EXPECT_EQ(change.leaving(), first);
    change.observe(second, 0, at(1.4));
    EXPECT_EQ(change.leaving(), first);
    change.observe(second, 1, at(1.45));
    EXPECT_FALSE(change.leaving());
    EXPECT_EQ(change.set(), 1U);
}

TEST(MicrophoneChange, oneThatIsNotHeardInTimeIsNotWaitedFor)
{
    MicrophoneChange change;
    change.observe(first, 0, at(0));
    change.observe(second, 0, at(1));
    change.observe(second, 0, at(1.6));
    EXPECT_FALSE(change.leaving());
    EXPECT_EQ(change.set(), 1U);
}

TEST(MicrophoneChange, nobodyStaysWhenThereIsNoNewOne)
{
    MicrophoneChange change;
    change.observe(first, 0, at(0));
    change.observe(std::nullopt, 0, at(1));
    EXPECT_FALSE(change.leaving());
    change.observe(second, 0, at(2));
    EXPECT_FALSE(change.leaving());
    EXPECT_EQ(change.set(), 0U);
}

TEST(MicrophoneChange, aThirdBeforeTheSecondWasHeardTakesItsPlace)
{
    MicrophoneChange change;
    change.observe(first, 0, at(0));
    change.observe(second, 0, at(1));
    change.observe(third, 0, at(1.2));
    EXPECT_EQ(change.set(), 1U);
    EXPECT_EQ(change.leaving(), first);
}

TEST(MicrophoneChange, backToTheFirstBeforeTheSecondWasHeardChangesNothing)
{
    MicrophoneChange change;
    change.observe(first, 0, at(0));
    change.observe(second, 0, at(1));
    change.observe(first, 0, at(1.2));
    EXPECT_EQ(change.set(), 0U);
    EXPECT_FALSE(change.leaving());
}

TEST(MicrophonePorts, theOtherSetIsHeardOnlyWhenItIsWanted)
{
    OneChannel channel;
    EXPECT_EQ(channel.hear(&ones, &twos), ones);
    channel.ports.setWanted(1);
    channel.hear(&ones, &twos);
    EXPECT_EQ(channel.hear(&ones, &twos), twos);
    EXPECT_EQ(channel.ports.heardSet(), 1U);
}

TEST(MicrophonePorts, untilTheWantedSetHasSoundTheOneBeforeIsHeard)
{
    OneChannel channel;
    channel.ports.setWanted(1);
    EXPECT_EQ(channel.hear(&ones, nullptr), ones);
    EXPECT_EQ(channel.ports.heardSet(), 0U);
}

TEST(MicrophonePorts, inTheCycleOfTheChangeOneFadesIntoTheOther)
{
    OneChannel channel;
    channel.ports.setWanted(1);
    EXPECT_EQ(channel.hear(&ones, &twos), (std::vector<float>{1, 1.25, 1.5, 1.75}));
}

TEST(MicrophonePorts, afterOneThatHasGoneTheOtherBeginsAtOnce)
{
    OneChannel channel;
    channel.ports.setWanted(1);
    EXPECT_EQ(channel.hear(nullptr, &twos), twos);
}

TEST(MicrophonePorts, withoutSoundNothingIsHeard)
{
    OneChannel channel;
    EXPECT_TRUE(channel.hear(nullptr, &twos).empty());
    channel.ports.setWanted(1);
    EXPECT_TRUE(channel.hear(nullptr, nullptr).empty());
}
