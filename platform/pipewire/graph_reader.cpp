#include "platform/pipewire/graph_reader.h"

#include <array>
#include <charconv>
#include <cstring>
#include <pipewire/pipewire.h>
#include <spa/utils/json.h>

namespace tolvenary
{

namespace
{

template <typename Number> std::optional<Number> number(const std::string &digits)
{
    Number value{};
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return error == std::errc() && end != digits.data() ? std::optional(value) : std::nullopt;
}

template <typename Number> std::optional<Number> number(const spa_dict *properties, const char *key)
{
    return number<Number>(readText(properties, key));
}

} // namespace

std::string readText(const spa_dict *properties, const char *key)
{
    const char *value = properties == nullptr ? nullptr : spa_dict_lookup(properties, key);
    return value == nullptr ? std::string() : std::string(value);
}

std::uint64_t readSerial(GlobalId id, const spa_dict *properties)
{
    return number<std::uint64_t>(properties, PW_KEY_OBJECT_SERIAL).value_or(id);
}

void readNode(GraphNode &node, const spa_dict *properties)
{
    node.name = readText(properties, PW_KEY_NODE_NAME);
    node.description = readText(properties, PW_KEY_NODE_DESCRIPTION);
    node.nick = readText(properties, PW_KEY_NODE_NICK);
    node.mediaClass = readText(properties, PW_KEY_MEDIA_CLASS);
    node.linkGroup = readText(properties, PW_KEY_NODE_LINK_GROUP);
    node.clientId = number<GlobalId>(properties, PW_KEY_CLIENT_ID);
}

void readClient(GraphClient &client, const spa_dict *properties)
{
    // The sockets of the pulse server's clients all belong to that server, so the application's own statement is
    // better there, and only there.
    const bool isPulse = readText(properties, PW_KEY_CLIENT_API) == "pipewire-pulse";
    client.processId = number<std::int32_t>(properties, isPulse ? PW_KEY_APP_PROCESS_ID : PW_KEY_SEC_PID);
    client.applicationName = readText(properties, PW_KEY_APP_NAME);
    client.binary = readText(properties, PW_KEY_APP_PROCESS_BINARY);
}

GraphPort readPort(GlobalId id, const spa_dict *properties)
{
    GraphPort port;
    port.id = id;
    port.nodeId = number<GlobalId>(properties, PW_KEY_NODE_ID).value_or(0);
    port.index = number<std::uint32_t>(properties, PW_KEY_PORT_ID).value_or(0);
    port.direction = readText(properties, PW_KEY_PORT_DIRECTION) == "in" ? PortDirection::input : PortDirection::output;
    port.isMonitor = readText(properties, PW_KEY_PORT_MONITOR) == "true";
    port.name = readText(properties, PW_KEY_PORT_NAME);
    port.channel = readText(properties, PW_KEY_AUDIO_CHANNEL);
    return port;
}

std::optional<GraphLink> readLink(const spa_dict *properties)
{
    const auto output = number<GlobalId>(properties, PW_KEY_LINK_OUTPUT_PORT);
    const auto input = number<GlobalId>(properties, PW_KEY_LINK_INPUT_PORT);
    return output && input ? std::optional(GraphLink{*output, *input}) : std::nullopt;
}

std::string readDefault(const char *json)
{
    if (json == nullptr)
        return {};
    std::array<spa_json, 2> levels{};
    std::array<char, 1024> key{};
    std::array<char, 1024> value{};
    spa_json_init(&levels[0], json, std::strlen(json));
    if (spa_json_enter_object(&levels[0], &levels[1]) <= 0)
        return {};
    while (spa_json_get_string(&levels[1], key.data(), key.size()) > 0) {
        if (spa_json_get_string(&levels[1], value.data(), value.size()) <= 0)
            return {};
        if (std::strcmp(key.data(), "name") == 0)
            return value.data();
    }
    return {};
}

std::uint32_t readRate(const char *value)
{
    return number<std::uint32_t>(std::string(value)).value_or(0);
}

} // namespace tolvenary
