#pragma once

#include "platform/pipewire/graph.h"

struct spa_dict;

namespace tolvenary
{

// Reads what the server, and through it any program, says of its objects. Any of it may be missing or make no sense:
// what cannot be read is empty, 0 or none. `properties` may be null. Thread: any.

std::string readText(const spa_dict *properties, const char *key);
std::uint64_t readSerial(GlobalId id, const spa_dict *properties);
void readNode(GraphNode &node, const spa_dict *properties);
void readClient(GraphClient &client, const spa_dict *properties);
GraphPort readPort(GlobalId id, const spa_dict *properties);
std::optional<GraphLink> readLink(const spa_dict *properties);

/// The node in the value of a default, which is { "name": "…" }; null is no default.
std::string readDefault(const char *json);
/// The value of a setting that is a rate.
std::uint32_t readRate(const char *value);

} // namespace tolvenary
