#include "platform/pipewire/session_node.h"

namespace tolvenary
{

SessionNode::SessionNode(GraphSession &session, NodeSpec spec, NodeRole role, FilterNode::Process process)
    : m_session(session), m_node(std::make_unique<FilterNode>(std::move(spec), std::move(process), [&session] {
          session.connection().scheduleUpdate();
      }))
{
    const Connection::Lock lock(m_session.connection());
    m_session.add(*m_node, std::move(role));
}

SessionNode::~SessionNode()
{
    stop();
    const Connection::Lock lock(m_session.connection());
    m_session.retire(std::move(m_node));
}

} // namespace tolvenary
