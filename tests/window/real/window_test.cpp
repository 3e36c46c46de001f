#include "tests/window/real/window_test.h"

#include "tests/session/support/wait_until.h"

#include <iostream>
#include <stdexcept>

namespace tolvenary::session
{

using namespace std::chrono_literals;

void WindowTest::openDesktop(const DisplayOptions &display)
{
    s_desktop = std::make_unique<Desktop>(display);
}

void WindowTest::SetUp()
{
    ASSERT_NE(s_desktop, nullptr) << "there is no desktop";
    desktop().plugDevice();
}

void WindowTest::TearDown()
{
    if (!m_program)
        return;
    if (HasFailure())
        explainFailure();
    m_program->process().end();
    EXPECT_EQ(m_program->process().waitForEnd(0s), 0) << "it did not end well";
    EXPECT_EQ(m_program->messages(), "");
}

void WindowTest::launch(const PanelProgram::Variables &variables)
{
    m_window.reset();
    m_program.reset();
    const auto scale = variables.find("QT_SCALE_FACTOR");
    m_scale = scale != variables.end() ? std::stod(scale->second) : 1;
    m_program = std::make_unique<PanelProgram>(desktop().session(), variables);
    awaitWindow();
    // The picture stands still only when the launch work is done.
    if (desktop().hasDevice() && !eventually([this] { return isVisible("Refresh devices"); }))
        throw std::runtime_error("the device does not show");
}

void WindowTest::awaitWindow()
{
    m_window = std::make_unique<XWindow>(m_program->pid(), "Tolvenary");
}

ScreenBox WindowTest::place()
{
    return window().geometry();
}

bool WindowTest::isVisible(const std::string &name)
{
    const auto element = panel().find(name);
    return element && panel().box(*element).width > 0;
}

ScreenBox WindowTest::boxOf(const std::string &name, const std::string &role)
{
    const auto pixels = [this](int length) { return static_cast<int>(length * m_scale); };
    const ScreenBox box = panel().box(panel().await(name, role));
    const ScreenPoint from = origin();
    return {from.x + pixels(box.x), from.y + pixels(box.y), pixels(box.width), pixels(box.height)};
}

void WindowTest::pick(const std::string &picker, const std::string &row)
{
    press(picker);
    panel().act(panel().await(row, "list item"));
    if (!eventually([&] { return !isThere(row, "list item"); }))
        throw std::runtime_error("the list of " + picker + " stays open");
}

void WindowTest::startMix()
{
    pick("App", Desktop::musicProgram);
    press("Start");
    if (!eventually([this] { return countsFrames(); }))
        throw std::runtime_error("the mix does not run");
}

bool WindowTest::countsFrames() const
{
    return m_program->microphoneFrames() > 0 && m_program->applicationFrames() > 0;
}

bool WindowTest::leavesNoSound()
{
    const pid_t process = program().pid();
    return desktop().session().waitForGraph(
        [process](const SoundGraph &graph) { return graph.nodesOfProcess(process).empty(); });
}

bool WindowTest::eventually(const std::function<bool()> &condition)
{
    // The program looked at must get its turn between two looks.
    return waitUntil(condition, 15s, [] { std::this_thread::sleep_for(20ms); });
}

void WindowTest::explainFailure()
{
    if (!m_program->process().isRunning()) {
        std::cout << "the program has ended\n";
        return;
    }
    for (const AccessibleElement &element : panel().elements())
        std::cout << element.role << ": " << element.name << " (" << panel().box(element) << ")\n";
    const auto *test = testing::UnitTest::GetInstance()->current_test_info();
    const std::filesystem::path file =
        std::filesystem::path(TOLVENARY_PICTURES) / (std::string("failed-") + test->name() + ".png");
    if (desktop().display().saveScreenshot(file, desktop().screen()))
        std::cout << "the screen is in " << file << '\n';
}

} // namespace tolvenary::session
