#pragma once

#include <QCoreApplication>
#include <QTimer>
#include <array>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace tolvenary
{

/// Serves the main event loop until the condition holds; false when it does not hold within the limit.
template <typename Condition>
bool spinUntil(Condition condition, std::chrono::milliseconds limit = std::chrono::seconds(20))
{
    QTimer end; // wakes the loop when nothing else does
    end.setSingleShot(true);
    end.start(limit);
    while (!condition() && end.isActive())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    return condition();
}

/// The application object that Qt's event loop needs, for as long as a test program runs its tests.
class QtApplication : public testing::Environment
{
  public:
    void SetUp() override { m_application = std::make_unique<QCoreApplication>(m_count, m_arguments.data()); }
    void TearDown() override { m_application.reset(); }

  private:
    int m_count = 1;
    std::string m_name = "tests";
    std::array<char *, 2> m_arguments = {m_name.data(), nullptr};
    std::unique_ptr<QCoreApplication> m_application;
};

} // namespace tolvenary
