#pragma once

#include <QSocketNotifier>

#include <memory>

namespace tolvenary
{

/// Lets SIGINT and SIGTERM end the run loop, so that the program ends as it does when its window is closed, and leaves
/// nothing behind. There is one while the run loop runs. Thread: main.
class QuitSignals
{
  public:
    QuitSignals();
    ~QuitSignals();

    QuitSignals(const QuitSignals &) = delete;
    QuitSignals &operator=(const QuitSignals &) = delete;

  private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace tolvenary
