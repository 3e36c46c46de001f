#include "tests/session/support/virtual_display.h"

#include "tests/session/support/mouse_and_keys.h"
#include "tests/session/support/wait_until.h"

#include <QFile>
#include <QImage>
#include <QtEndian>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace tolvenary::session
{

namespace
{

constexpr int strip = 16;

/// The frame buffer that Xvfb keeps in a file is an X window dump: big-endian 32-bit fields, a colour table, pixels.
QImage readFrameBuffer(const std::filesystem::path &path)
{
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    enum Field { headerSize = 0, width = 4, height = 5, bytesPerLine = 12, colours = 19, fieldCount = 25 };
    if (bytes.size() < fieldCount * 4)
        return {};
    const auto field = [&](Field number) {
        return static_cast<qsizetype>(qFromBigEndian<quint32>(bytes.constData() + number * 4));
    };
    constexpr qsizetype colourSize = 12;
    const qsizetype pixels = field(headerSize) + field(colours) * colourSize;
    if (bytes.size() < pixels + field(height) * field(bytesPerLine))
        return {};
    const auto *data = reinterpret_cast<const uchar *>(bytes.constData() + pixels);
    return QImage(data, static_cast<int>(field(width)), static_cast<int>(field(height)), field(bytesPerLine),
                  QImage::Format_RGB32)
        .copy();
}

} // namespace

VirtualDisplay::VirtualDisplay(PrivateSession &session, const DisplayOptions &options)
    : m_session(session),
      m_size{0, 0, options.width, options.height},
      m_frameBuffer(session.environment().root() / "screen")
{
    startServer(options);
    if (options.windowManager == WindowManager::openbox)
        startOpenbox();
    if (options.windowManager == WindowManager::weston)
        startWeston(options);
}

VirtualDisplay::~VirtualDisplay()
{
    m_windowManager.reset();
    m_server.reset();
    m_session.environment().unset("DISPLAY");
    m_session.environment().unset("WAYLAND_DISPLAY");
}

void VirtualDisplay::startServer(const DisplayOptions &options)
{
    std::filesystem::create_directory(m_frameBuffer);
    // Beside a compositor's output there is a strip from where the pointer can come.
    const int width = options.windowManager == WindowManager::weston ? options.width + strip : options.width;
    const std::string screen = std::to_string(width) + "x" + std::to_string(options.height) + "x24";
    // The server looks for a free number by itself and writes it to the descriptor given: its standard output. Without
    // -noreset it would begin anew, and turn away who is just connecting, whenever its last client goes.
    m_server = m_session.start({"Xvfb", "-displayfd", "1", "-noreset", "-screen", "0", screen, "-fbdir",
                                m_frameBuffer.string(), "-nocursor", "-nolisten", "tcp"});
    std::string number;
    const auto numberThere = [&] {
        const std::string output = m_server->output();
        const auto end = output.rfind('\n');
        const auto begin = end == std::string::npos || end == 0 ? std::string::npos : output.rfind('\n', end - 1);
        number = end == std::string::npos ? "" : output.substr(begin + 1, end - begin - 1);
        return !number.empty() && number.find_first_not_of("0123456789") == std::string::npos;
    };
    if (!waitUntil(numberThere, std::chrono::seconds(15)))
        throw std::runtime_error("no display: " + m_server->output());
    m_session.environment().set("DISPLAY", ":" + number);
}

/// Returns when it manages: a window that comes earlier would be placed by nobody.
void VirtualDisplay::startOpenbox()
{
    m_windowManager = m_session.start({"openbox"});
    const auto manages = [] {
        return runToEnd({"xprop", "-root", "_NET_SUPPORTING_WM_CHECK"}).find("window id") != std::string::npos;
    };
    if (!waitUntil(manages, std::chrono::seconds(15)))
        throw std::runtime_error("no window manager: " + m_windowManager->output());
}

/// Returns when its desktop is drawn. No panel, no animation: a window alone on one colour.
void VirtualDisplay::startWeston(const DisplayOptions &options)
{
    std::ostringstream colour;
    colour << "0x" << std::hex << background;
    std::ofstream(m_session.environment().configuration() / "weston.ini")
        << "[shell]\npanel-position=none\nlocking=false\nanimation=none\nstartup-animation=none\n"
        << "close-animation=none\nbackground-color=" << colour.str() << '\n';
    const std::string socket = "wayland-test";
    m_windowManager =
        m_session.start({"weston", "--backend=x11-backend.so", "--use-pixman", "--idle-time=0", "--socket=" + socket,
                         "--width=" + std::to_string(options.width), "--height=" + std::to_string(options.height)});
    const auto isDrawn = [&] { return screenshot().pixel(options.width / 2, options.height / 2) == background; };
    // It knows where the pointer is only once it has come in from outside, and counts on from there.
    const MouseAndKeys hands;
    const auto followsThePointer = [&] {
        hands.moveTo({options.width + strip / 2, 20});
        hands.moveTo({20, 20});
        return screenshot().copy(20, 20, 16, 16) != screenshot().copy(60, 20, 16, 16);
    };
    if (!waitUntil(isDrawn, std::chrono::seconds(20)) || !waitUntil(followsThePointer, std::chrono::seconds(20)))
        throw std::runtime_error("no Wayland compositor: " + m_windowManager->output());
    m_session.environment().set("WAYLAND_DISPLAY", socket);
}

QImage VirtualDisplay::screenshot() const
{
    return readFrameBuffer(m_frameBuffer / "Xvfb_screen0").copy(0, 0, m_size.width, m_size.height);
}

bool VirtualDisplay::saveScreenshot(const std::filesystem::path &file, const ScreenBox &box) const
{
    const QImage screen = screenshot();
    std::filesystem::create_directories(file.parent_path());
    return !screen.isNull() && screen.copy(box.x, box.y, box.width, box.height).save(QString::fromStdString(file));
}

} // namespace tolvenary::session
