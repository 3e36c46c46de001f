#include "tests/ui/support/warning_watch.h"
#include "tests/window/private_screen.h"

#include <QGuiApplication>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string_view>

namespace
{

/// The screen and the application on it, for as long as the tests run; not for listing them.
class OnScreen : public testing::Environment
{
  public:
    OnScreen(int &count, char **arguments)
        : m_withGL(std::any_of(arguments, arguments + count, [](std::string_view one) { return one == "--gl"; })),
          m_count(count),
          m_arguments(arguments)
    {
    }

    void SetUp() override
    {
        m_screen.emplace(m_withGL);
        m_screen->manageWindows();
        m_application.emplace(m_count, m_arguments);
        m_screen->bringAssistiveTools();
    }
    void TearDown() override
    {
        m_application.reset();
        m_screen.reset();
    }

  private:
    bool m_withGL;
    int &m_count;
    char **m_arguments;
    std::optional<tolvenary::test::PrivateScreen> m_screen;
    std::optional<QGuiApplication> m_application;
};

} // namespace

// Windows on a real display, in a session that nobody looks at; with "--gl" drawn with GL.
int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    tolvenary::test::failOnWarnings();
    testing::AddGlobalTestEnvironment(new OnScreen(argc, argv));
    return RUN_ALL_TESTS();
}
