#include "platform/pipewire/default_doubt.h"
#include "tests/platform/pipewire/graph_builder.h"

#include <gtest/gtest.h>

namespace tolvenary
{
namespace
{

/// Two sources, the first of which we know as the default, and a stream that records.
class DefaultDoubtTest : public testing::Test
{
  protected:
    DefaultDoubtTest()
    {
        m_built.port(m_stream, PortDirection::input, "FL");
        m_built.port(m_stream, PortDirection::input, "FR");
        m_built.graph.defaultSourceName = "first";
    }

    void linkTo(GlobalId source)
    {
        m_built.graph.links.clear();
        for (const char *channel : {"FL", "FR"})
            m_built.link(m_built.out(source, channel), m_built.in(m_stream, channel));
    }
    bool arises() { return m_doubt.arises(m_built.graph, m_stream); }

    GraphBuilder m_built;
    GlobalId m_first = m_built.source("first", {"FL", "FR"});
    GlobalId m_second = m_built.source("second", {"FL", "FR"});
    GlobalId m_stream = m_built.node("stream", "Stream/Input/Audio");
    DefaultDoubt m_doubt;
};

TEST_F(DefaultDoubtTest, doesNotAriseWhileTheStreamHearsNobody)
{
    EXPECT_FALSE(arises());
}

TEST_F(DefaultDoubtTest, doesNotAriseFromTheDefaultThatIsKnown)
{
    linkTo(m_first);
    EXPECT_FALSE(arises());
}

TEST_F(DefaultDoubtTest, doesNotAriseFromAChangeThatWasToldBefore)
{
    linkTo(m_first);
    EXPECT_FALSE(arises());
    m_built.graph.defaultSourceName = "second";
    EXPECT_FALSE(arises());
    linkTo(m_second);
    EXPECT_FALSE(arises());
}

TEST_F(DefaultDoubtTest, arisesOnceFromASourceThatIsNotTheDefault)
{
    linkTo(m_first);
    EXPECT_FALSE(arises());
    linkTo(m_second);
    EXPECT_TRUE(arises());
    EXPECT_FALSE(arises());
}

TEST_F(DefaultDoubtTest, arisesAlsoWhereTheStreamIsLinkedForTheFirstTime)
{
    linkTo(m_second);
    EXPECT_TRUE(arises());
}

TEST_F(DefaultDoubtTest, arisesAgainFromEachMove)
{
    linkTo(m_second);
    EXPECT_TRUE(arises());
    m_built.graph.defaultSourceName = "second";
    linkTo(m_first);
    EXPECT_TRUE(arises());
    m_built.graph.defaultSourceName = "first";
    linkTo(m_second);
    EXPECT_TRUE(arises());
}

TEST_F(DefaultDoubtTest, arisesWhileTheLinkOfBeforeIsStillThere)
{
    linkTo(m_first);
    EXPECT_FALSE(arises());
    m_built.link(m_built.out(m_second, "FL"), m_built.in(m_stream, "FL"));
    EXPECT_TRUE(arises());
}

TEST_F(DefaultDoubtTest, doesNotAriseFromWhatOthersHear)
{
    const GlobalId other = m_built.node("other", "Stream/Input/Audio");
    const GlobalId into = m_built.port(other, PortDirection::input, "FL");
    m_built.link(m_built.out(m_second, "FL"), into);
    EXPECT_FALSE(arises());
}

} // namespace
} // namespace tolvenary
