#include "platform/audio/av_audio_engine.h"
#include "platform/audio/av_audio_mixer_node.h"
#include "tests/platform/audio/fake_units.h"
#include "tests/platform/audio/test_blocks.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

using Floats = std::vector<float>;

/// A mixer in an engine, which alone may connect and prepare it.
class MixerTest : public testing::Test
{
  protected:
    Floats render(std::uint32_t frames, std::size_t channel = 0)
    {
        Samples samples(frames);
        m_mixer.render(samples.block());
        return samples[channel];
    }

    void connect(AVAudioNode &source, std::uint32_t bus)
    {
        m_engine.connect(source, m_mixer, 0, bus, standardFormat());
    }

    void prepare()
    {
        m_engine.attachNode(m_mixer);
        m_engine.prepare();
    }

    FakeUnits m_units;
    AVAudioMixerNode m_mixer;
    ConstantNode m_one{1.0F};
    ConstantNode m_half{0.5F};
    AVAudioEngine m_engine{m_units}; // destroyed first: it tells its nodes
};

} // namespace

TEST_F(MixerTest, withoutInputsItIsSilent)
{
    EXPECT_EQ(render(3), (Floats{0, 0, 0})) << "not prepared";
    prepare();
    EXPECT_EQ(render(3), (Floats{0, 0, 0}));
}

TEST_F(MixerTest, inputsAreAddedUpOnBothChannels)
{
    connect(m_one, 0);
    connect(m_half, 1);
    prepare();
    EXPECT_EQ(render(2, 0), (Floats{1.5F, 1.5F}));
    EXPECT_EQ(render(2, 1), (Floats{1.5F, 1.5F}));
}

TEST_F(MixerTest, aBusThatIsLeftOutIsSilent)
{
    connect(m_half, 3);
    prepare();
    EXPECT_EQ(render(2), (Floats{0.5F, 0.5F}));
}

TEST_F(MixerTest, nothingLimitsTheSum)
{
    ConstantNode loud(3.0F);
    connect(loud, 0);
    connect(m_one, 1);
    prepare();
    m_mixer.setOutputVolume(2);
    EXPECT_EQ(render(1), (Floats{8}));
}

TEST_F(MixerTest, theFirstBlockIsAtTheVolumeSetBefore)
{
    connect(m_one, 0);
    m_mixer.setOutputVolume(0.35F);
    prepare();
    EXPECT_EQ(render(3), (Floats{0.35F, 0.35F, 0.35F}));
}

TEST_F(MixerTest, alsoTheFirstBlockOfAnotherRunIsAtTheVolumeSetBefore)
{
    connect(m_one, 0);
    prepare();
    render(3);
    m_mixer.setOutputVolume(0.5F);
    prepare();
    EXPECT_EQ(render(3), (Floats{0.5F, 0.5F, 0.5F}));
}

TEST_F(MixerTest, aNewVolumeIsReachedInAStraightLineOverOneBlock)
{
    connect(m_one, 0);
    prepare();
    render(4);
    m_mixer.setOutputVolume(2);
    EXPECT_EQ(render(4), (Floats{1.25F, 1.5F, 1.75F, 2}));
    EXPECT_EQ(render(2), (Floats{2, 2}));
}

TEST_F(MixerTest, everyVolumeIsExactAfterTheRamp)
{
    connect(m_one, 0);
    prepare();
    for (const float volume : {0.0F, 0.35F, 1.0F, 2.0F, 0.1F, 0.0F, 2.0F, 0.35F, 0.0F, 1.0F}) {
        m_mixer.setOutputVolume(volume);
        EXPECT_EQ(render(513).back(), volume);
        EXPECT_EQ(render(513), Floats(513, volume));
    }
}

TEST_F(MixerTest, aRampedStepIsNeverLargerThanItsShareOfTheBlock)
{
    connect(m_one, 0);
    prepare();
    float last = render(128).back();
    m_mixer.setOutputVolume(0);
    for (const float sample : render(128)) {
        EXPECT_LE(std::abs(sample - last), 1.0F / 128 + 1e-6F);
        last = sample;
    }
    EXPECT_EQ(last, 0);
}

TEST_F(MixerTest, aVolumeOfZeroSilencesEvenWhatIsNoNumber)
{
    ConstantNode broken(std::nanf(""));
    connect(broken, 0);
    m_mixer.setOutputVolume(0);
    prepare();
    EXPECT_EQ(render(2), (Floats{0, 0}));
    EXPECT_EQ(broken.frames(), 2U) << "an input that is not heard is still played";
}

TEST_F(MixerTest, anEmptyBlockDoesNotUseUpTheRamp)
{
    connect(m_one, 0);
    prepare();
    render(4);
    m_mixer.setOutputVolume(0);
    render(0);
    EXPECT_EQ(render(4), (Floats{0.75F, 0.5F, 0.25F, 0}));
}

TEST_F(MixerTest, aBlockLongerThanPreparedIsRenderedWholeWithOneRamp)
{
    constexpr std::uint32_t frames = 20000;
    connect(m_half, 0);
    connect(m_half, 1);
    prepare();
    render(4);
    m_mixer.setOutputVolume(0);
    const Floats out = render(frames);
    for (std::uint32_t i = 0; i < frames; ++i)
        ASSERT_NEAR(out[i], static_cast<float>(frames - 1 - i) / frames, 1e-6F) << i;
    EXPECT_EQ(m_half.frames(), 2 * (frames + 4));
}

TEST_F(MixerTest, afterTheEngineIsResetItHasNoInputs)
{
    connect(m_one, 0);
    prepare();
    m_engine.reset();
    prepare();
    EXPECT_EQ(render(2), (Floats{0, 0}));
}
