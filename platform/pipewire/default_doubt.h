#pragma once

#include "platform/pipewire/graph.h"

#include <set>

namespace tolvenary
{

/// Whether the default source that we know of may no longer be the one.
///
/// While any program begins to read the session's defaults, the server tells changes of them to that program alone, and
/// to nobody any more once one has died over it. But the session manager also links each recording stream to the new
/// default: a stream of ours that comes to hear another source tells what we have missed.
///
/// Pure logic. Control thread.
class DefaultDoubt
{
  public:
    /// True once for each source that comes to be heard by the stream and is not the default that we know: it may just
    /// be that the user has moved the stream.
    bool arises(const Graph &graph, GlobalId stream);

  private:
    std::set<GlobalId> m_heard;
};

} // namespace tolvenary
