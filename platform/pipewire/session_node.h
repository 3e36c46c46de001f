#pragma once

#include "platform/pipewire/graph_session.h"

namespace tolvenary
{

/// A node of ours from its making to its end: in the session, and so in the graph whenever there is a server.
/// After its end the server may show it for a moment still, silent. One thread, and not the control thread.
class SessionNode
{
  public:
    SessionNode(GraphSession &session, NodeSpec spec, NodeRole role, FilterNode::Process process);
    ~SessionNode();
    SessionNode(const SessionNode &) = delete;
    SessionNode &operator=(const SessionNode &) = delete;

    FilterNode &node() { return *m_node; }

    /// Opens the gate to the process callback.
    void start() { m_node->gate().open(); }
    /// When this has returned, the callback is not running and will not be called again until start().
    void stop() { m_node->gate().close(); }

  private:
    GraphSession &m_session;
    std::unique_ptr<FilterNode> m_node;
};

} // namespace tolvenary
