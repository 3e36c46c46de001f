#pragma once

#include "platform/pipewire/graph.h"

#include <set>

namespace tolvenary
{

/// Whether the default source that we know of may be out of date.
///
/// While some program begins to read the session's defaults, the server tells changes of them to that program alone,
/// and if it dies meanwhile, to nobody from then on. But the session manager also links each recording stream to the
/// new default: when a stream of ours comes to hear another source, we have missed a change.
///
/// Pure logic. Control thread.
class DefaultDoubt
{
  public:
    /// True once for each source that the stream comes to hear and that is not the default we know. (It may just be
    /// that the user has moved the stream.)
    bool arises(const Graph &graph, GlobalId stream);

  private:
    std::set<GlobalId> m_heard;
};

} // namespace tolvenary
