#pragma once

#include "platform/pipewire/link_wishes.h"

#include <set>

namespace tolvenary
{

/// Every link that should be there now.
std::set<GraphLink> planLinks(const Graph &graph, const LinkWishes &wishes);

} // namespace tolvenary
