#include "platform/pipewire/session_node.h"

namespace tolvenary
{

SessionNode::SessionNode(GraphSession &session, NodeSpec spec, NodeRole role, FilterNode::Process process)
    : m_session(session),
      m_node(std::move(spec), std::move(process), [&session] { session.connection().scheduleUpdate(); })
{
    const Connection::Lock lock(m_session.connection());
    m_session.add(m_node, std::move(role));
}

SessionNode::~SessionNode()
{
    m_node.gate().close();
    const Connection::Lock lock(m_session.connection());
    m_session.remove(m_node);
}

} // namespace tolvenary
