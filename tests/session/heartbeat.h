#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>

namespace tolvenary::session
{

/// Beats on the main thread; the longest pause between two beats is how long the window would have been frozen.
class Heartbeat
{
  public:
    Heartbeat()
    {
        m_clock.start();
        QObject::connect(&m_timer, &QTimer::timeout, [this] { m_longest = std::max(m_longest, m_clock.restart()); });
        m_timer.start(5);
    }
    qint64 longestPause() { return std::max(m_longest, m_clock.elapsed()); }

  private:
    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_longest = 0;
};

} // namespace tolvenary::session
