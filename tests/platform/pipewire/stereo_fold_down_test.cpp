#include "platform/pipewire/stereo_fold_down.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary
{
namespace
{

using testing::ElementsAre;
using testing::FloatEq;

constexpr float root = 0.70710678F;

class StereoFoldDownTest : public testing::Test
{
  protected:
    /// Ports in their order; those not given have no sound.
    std::array<std::vector<float>, 2> fold(const std::vector<std::vector<float>> &ports)
    {
        std::vector<void *> pointers;
        for (const std::vector<float> &port : ports)
            pointers.push_back(port.empty() ? nullptr : const_cast<float *>(port.data()));
        pointers.resize(StereoFoldDown::ports().size());
        const std::span<const float *const> sides = m_foldDown.fold(Cycle(pointers, {}, 2));
        if (sides.empty())
            return {};
        return {std::vector<float>(sides[0], sides[0] + 2), std::vector<float>(sides[1], sides[1] + 2)};
    }

    StereoFoldDown m_foldDown;
};

TEST_F(StereoFoldDownTest, noSoundAtAnyPortIsNoCycle)
{
    EXPECT_TRUE(fold({})[0].empty());
}

TEST_F(StereoFoldDownTest, leftAndRightPassAsTheyAre)
{
    const auto sides = fold({{{1, 2}, {3, 4}, {}, {}, {}}});
    EXPECT_THAT(sides[0], ElementsAre(1, 2));
    EXPECT_THAT(sides[1], ElementsAre(3, 4));
}

TEST_F(StereoFoldDownTest, aSideWithoutSoundIsSilentBesideOneWith)
{
    const auto sides = fold({{{}, {3, 4}, {}, {}, {}}});
    EXPECT_THAT(sides[0], ElementsAre(0, 0));
    EXPECT_THAT(sides[1], ElementsAre(3, 4));
}

TEST_F(StereoFoldDownTest, theCentreReachesBothSidesThreeDecibelDown)
{
    const auto sides = fold({{{}, {}, {1, -1}, {}, {}}});
    EXPECT_THAT(sides[0], ElementsAre(FloatEq(root), FloatEq(-root)));
    EXPECT_THAT(sides[1], ElementsAre(FloatEq(root), FloatEq(-root)));
}

TEST_F(StereoFoldDownTest, aSurroundReachesItsSideThreeDecibelDown)
{
    const auto sides = fold({{{1, 1}, {1, 1}, {}, {1, 2}, {}}});
    EXPECT_THAT(sides[0], ElementsAre(FloatEq(1 + root), FloatEq(1 + 2 * root)));
    EXPECT_THAT(sides[1], ElementsAre(1, 1));
}

TEST_F(StereoFoldDownTest, allPortsOfASideAreAddedUp)
{
    const auto sides = fold({{1, 1}, {}, {}, {}, {}, {2, 2}, {4, 4}, {}, {}, {8, 16}, {}});
    EXPECT_THAT(sides[0], ElementsAre(11, 19));
    EXPECT_THAT(sides[1], ElementsAre(4, 4));
}

} // namespace
} // namespace tolvenary
