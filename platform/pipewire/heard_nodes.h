#pragma once

#include "platform/pipewire/link_wishes.h"

#include <set>

namespace tolvenary
{

/// The default source; none where that is a sink's monitor, or delivers our own mix.
const GraphNode *microphoneOf(const Graph &graph, const LinkWishes &wishes);

/// The streams that the tap is to hear, held back or not.
std::set<GlobalId> tappedStreams(const Graph &graph, const TapWish &wish);

} // namespace tolvenary
