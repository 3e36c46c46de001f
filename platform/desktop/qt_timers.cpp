#include "platform/desktop/qt_timers.h"

#include <QTimer>

namespace tolvenary
{

namespace
{

class QtTimer : public Timer
{
  public:
    QtTimer(std::chrono::milliseconds interval, bool repeats, std::function<void()> block)
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setSingleShot(!repeats);
        // The connection owns the block and lives until the block returns, even if the block destroys this timer.
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, std::move(block));
        m_timer.start(interval);
    }

    void invalidate() override { m_timer.stop(); }

  private:
    QTimer m_timer;
};

} // namespace

Timers::Duration QtTimers::now()
{
    return std::chrono::steady_clock::now().time_since_epoch();
}

std::unique_ptr<Timer> QtTimers::scheduledTimerWithTimeInterval(Duration interval, bool repeats,
                                                                std::function<void()> block)
{
    return std::make_unique<QtTimer>(std::chrono::round<std::chrono::milliseconds>(interval), repeats,
                                     std::move(block));
}

} // namespace tolvenary
