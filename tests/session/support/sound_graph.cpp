#include "tests/session/support/sound_graph.h"

#include "tests/session/support/child_process.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

namespace tolvenary::session
{

namespace
{

std::string text(const QJsonValue &value)
{
    return value.toVariant().toString().toStdString();
}

std::uint32_t number(const QJsonValue &value)
{
    return static_cast<std::uint32_t>(value.toInteger());
}

Properties propertiesOf(const QJsonObject &object)
{
    Properties properties;
    for (auto it = object.begin(); it != object.end(); ++it)
        properties.emplace(it.key().toStdString(), text(it.value()));
    return properties;
}

void addMetadata(const QJsonObject &object, std::map<std::string, std::string> &metadata)
{
    const std::string name = text(object["props"].toObject()["metadata.name"]);
    const QJsonArray entries = object["metadata"].toArray();
    for (const QJsonValue entry : entries) {
        if (entry["subject"].toInteger() != 0)
            continue;
        const QJsonValue value = entry["value"];
        const std::string json = value.isObject()
                                     ? QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact).toStdString()
                                     : text(value);
        metadata.insert_or_assign(name + "/" + text(entry["key"]), json);
    }
}

void addPort(std::uint32_t id, const QJsonObject &info, std::vector<GraphPort> &ports)
{
    const QJsonObject properties = info["props"].toObject();
    ports.push_back({id, number(properties["node.id"]), text(properties["port.name"]),
                     info["direction"].toString() == "input", properties["port.monitor"].toBool()});
}

void addLink(std::uint32_t id, const QJsonObject &info, std::vector<GraphLink> &links)
{
    links.push_back({id, number(info["output-port-id"]), number(info["input-port-id"]), number(info["output-node-id"]),
                     number(info["input-node-id"]), text(info["state"])});
}

void add(const QJsonObject &object, SoundGraph &graph)
{
    const QString type = object["type"].toString();
    const std::uint32_t id = number(object["id"]);
    const QJsonObject info = object["info"].toObject();
    const QJsonObject properties = info["props"].toObject();
    if (type == "PipeWire:Interface:Client")
        graph.clients.push_back({id, propertiesOf(properties)});
    else if (type == "PipeWire:Interface:Node")
        graph.nodes.push_back({id, text(properties["node.name"]), text(info["state"]), propertiesOf(properties)});
    else if (type == "PipeWire:Interface:Port")
        addPort(id, info, graph.ports);
    else if (type == "PipeWire:Interface:Link")
        addLink(id, info, graph.links);
    else if (type == "PipeWire:Interface:Metadata")
        addMetadata(object, graph.metadata);
}

template <typename Objects, typename Test> auto find(const Objects &objects, Test test)
{
    const auto found = std::find_if(objects.begin(), objects.end(), test);
    return found != objects.end() ? &*found : nullptr;
}

std::string valueOr(const Properties &properties, const std::string &key, const std::string &otherwise = {})
{
    const auto found = properties.find(key);
    return found != properties.end() ? found->second : otherwise;
}

} // namespace

SoundGraph SoundGraph::read()
{
    // Names need not be valid text, and pw-dump hands them on as they are.
    const QString text = QString::fromUtf8(QByteArray::fromStdString(runToEnd({"pw-dump"}, std::chrono::seconds(40))));
    const QJsonDocument dump = QJsonDocument::fromJson(text.toUtf8());
    SoundGraph graph;
    const QJsonArray objects = dump.array();
    for (const QJsonValue object : objects)
        add(object.toObject(), graph);
    return graph;
}

const GraphNode *SoundGraph::node(const std::string &name) const
{
    return find(nodes, [&](const GraphNode &node) { return node.name == name; });
}

const GraphPort *SoundGraph::port(const std::string &path) const
{
    const auto colon = path.rfind(':');
    const GraphNode *owner = node(path.substr(0, colon));
    if (owner == nullptr || colon == std::string::npos)
        return nullptr;
    return find(ports,
                [&](const GraphPort &port) { return port.node == owner->id && port.name == path.substr(colon + 1); });
}

std::vector<GraphPort> SoundGraph::portsOf(std::uint32_t node) const
{
    std::vector<GraphPort> found;
    std::copy_if(ports.begin(), ports.end(), std::back_inserter(found),
                 [&](const GraphPort &port) { return port.node == node; });
    return found;
}

std::vector<GraphNode> SoundGraph::nodesOfProcess(std::int64_t process) const
{
    const std::string wanted = std::to_string(process);
    std::vector<GraphNode> found;
    for (const GraphNode &node : nodes) {
        const std::string clientId = valueOr(node.properties, "client.id");
        const GraphClient *client =
            find(clients, [&](const GraphClient &one) { return std::to_string(one.id) == clientId; });
        const std::string processOfClient =
            client != nullptr ? valueOr(client->properties, "application.process.id") : std::string();
        if (valueOr(node.properties, "application.process.id", processOfClient) == wanted)
            found.push_back(node);
    }
    return found;
}

const GraphLink *SoundGraph::link(std::uint32_t outputPort, std::uint32_t inputPort) const
{
    return find(links,
                [&](const GraphLink &link) { return link.outputPort == outputPort && link.inputPort == inputPort; });
}

std::string SoundGraph::defaultNode(const std::string &key) const
{
    const auto entry = metadata.find("default/" + key);
    if (entry == metadata.end())
        return {};
    return text(QJsonDocument::fromJson(QByteArray::fromStdString(entry->second)).object()["name"]);
}

} // namespace tolvenary::session
