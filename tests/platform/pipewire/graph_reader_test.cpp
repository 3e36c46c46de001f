#include "platform/pipewire/graph_reader.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <spa/utils/dict.h>
#include <utility>

namespace tolvenary
{
namespace
{

/// What a server says of one object.
class Said
{
  public:
    Said(std::initializer_list<std::pair<const char *, const char *>> properties)
    {
        for (const auto &[key, value] : properties)
            m_items.push_back({key, value});
        m_dict.n_items = static_cast<std::uint32_t>(m_items.size());
        m_dict.items = m_items.data();
    }
    Said(const Said &) = delete;
    Said &operator=(const Said &) = delete;

    const spa_dict *properties() const { return &m_dict; }

  private:
    std::vector<spa_dict_item> m_items;
    spa_dict m_dict{};
};

std::optional<std::int32_t> processOf(std::initializer_list<std::pair<const char *, const char *>> properties)
{
    GraphClient client;
    readClient(client, Said(properties).properties());
    return client.processId;
}

} // namespace

TEST(GraphReader, ofAnObjectThatSaysNothingNothingIsKnown)
{
    GraphNode node;
    readNode(node, nullptr);
    EXPECT_EQ(node.name, "");
    EXPECT_FALSE(node.clientId);
    EXPECT_EQ(readSerial(7, nullptr), 7U);
    EXPECT_FALSE(readLink(nullptr));
    EXPECT_EQ(readPort(7, nullptr).direction, PortDirection::output);
}

TEST(GraphReader, aPortIsReadWithItsPlace)
{
    const Said said{{"node.id", "31"},        {"port.id", "2"},      {"port.direction", "in"},
                    {"port.monitor", "true"}, {"port.name", "in_3"}, {"audio.channel", "FC"}};
    const GraphPort port = readPort(40, said.properties());
    EXPECT_EQ(port.id, 40U);
    EXPECT_EQ(port.nodeId, 31U);
    EXPECT_EQ(port.index, 2U);
    EXPECT_EQ(port.direction, PortDirection::input);
    EXPECT_TRUE(port.isMonitor);
    EXPECT_EQ(port.name, "in_3");
    EXPECT_EQ(port.channel, "FC");
}

TEST(GraphReader, aNumberThatIsNoneIsNotGuessed)
{
    for (const char *const bad : {"", " ", "x", "-", "4294967296", "-1", "99999999999999999999999"})
        EXPECT_FALSE(readLink(Said{{"link.output.port", "5"}, {"link.input.port", bad}}.properties())) << bad;
    EXPECT_TRUE(readLink(Said{{"link.output.port", "5"}, {"link.input.port", "6"}}.properties()));
}

TEST(GraphReader, ofAPulseClientTheApplicationsOwnWordCounts)
{
    EXPECT_EQ(processOf({{"pipewire.sec.pid", "10"}, {"application.process.id", "20"}}), 10);
    EXPECT_EQ(
        processOf({{"client.api", "pipewire-pulse"}, {"pipewire.sec.pid", "10"}, {"application.process.id", "20"}}),
        20);
    EXPECT_FALSE(processOf({{"client.api", "pipewire-pulse"}, {"application.process.id", "2147483648"}}));
}

TEST(GraphReader, theDefaultIsTheNameInItsObject)
{
    EXPECT_EQ(readDefault(R"({ "name": "microphone" })"), "microphone");
    EXPECT_EQ(readDefault(R"({ "other": 5, "name": "a \"b\" \u00e4", "name": "c" })"), "a \"b\" ä");
}

TEST(GraphReader, aDefaultThatIsNoNameIsNone)
{
    for (const char *const bad : {"", "microphone", "[ \"name\" ]", "{", "{ \"name\"", "{ \"name\":", "{}",
                                  "{ \"nam\": \"x\" }", "\"name\"", "{ { \"name\": \"x\" } }"})
        EXPECT_EQ(readDefault(bad), "") << bad;
    EXPECT_EQ(readDefault(nullptr), "");
    EXPECT_EQ(readDefault(("{ \"name\": \"" + std::string(5000, 'x') + "\" }").c_str()), "") << "longer than any name";
}

TEST(GraphReader, aRateIsItsDigits)
{
    EXPECT_EQ(readRate("44100"), 44100U);
    for (const char *const bad : {"", "-44100", "fast", "44100000000000"})
        EXPECT_EQ(readRate(bad), 0U) << bad;
}

} // namespace tolvenary
