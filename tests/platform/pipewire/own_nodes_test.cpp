#include "platform/pipewire/own_nodes.h"

#include <gtest/gtest.h>

namespace tolvenary
{
namespace
{

/// Nodes without a server; which links they wish for is seen with one.
class OwnNodesTest : public testing::Test
{
  protected:
    FilterNode m_output{{}, {}, {}};
    FilterNode m_input{{}, {}, {}};
    OwnNodes m_nodes;
};

TEST_F(OwnNodesTest, anOutputAndSomethingElseAreAMix)
{
    EXPECT_FALSE(m_nodes.isMixing());
    m_nodes.add(m_input, InputRole{});
    EXPECT_FALSE(m_nodes.isMixing()) << "nothing goes out";
    m_nodes.add(m_output, OutputRole{"device"});
    EXPECT_TRUE(m_nodes.isMixing());
    m_nodes.remove(m_input);
    EXPECT_FALSE(m_nodes.isMixing()) << "nothing comes in";
}

TEST_F(OwnNodesTest, onlyAnOutputThatIsThereHasADevice)
{
    m_nodes.add(m_input, InputRole{});
    m_nodes.add(m_output, OutputRole{"device"});
    EXPECT_EQ(m_nodes.deviceOf(m_output), "device");
    EXPECT_EQ(m_nodes.deviceOf(m_input), std::nullopt);
    m_nodes.remove(m_output);
    EXPECT_EQ(m_nodes.deviceOf(m_output), std::nullopt);
}

TEST_F(OwnNodesTest, aNodeThatTheServerHasNotGotWishesForNothing)
{
    m_nodes.add(m_output, OutputRole{"device"});
    EXPECT_TRUE(m_nodes.wishes({}).outputs.empty());
}

TEST_F(OwnNodesTest, aMicrophoneTakesOverFromTheOneBefore)
{
    MicrophonePorts ports(1);
    m_nodes.add(m_input, InputRole{&ports});
    m_nodes.followMicrophone(40, OwnNodes::Time(100));
    EXPECT_FALSE(m_nodes.isChangingMicrophone());
    m_nodes.followMicrophone(41, OwnNodes::Time(101));
    EXPECT_TRUE(m_nodes.isChangingMicrophone()) << "it is not heard yet";
    m_nodes.followMicrophone(41, OwnNodes::Time(102));
    EXPECT_FALSE(m_nodes.isChangingMicrophone()) << "nor waited for any longer";
}

} // namespace
} // namespace tolvenary
