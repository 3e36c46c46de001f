#include "platform/desktop/x_window_occlusion.h"

#include <QGuiApplication>
#include <QSocketNotifier>
#include <cstdlib>
#include <utility>
#include <xcb/xcb.h>

namespace tolvenary
{

namespace
{

struct Disconnect {
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};

struct Free {
    void operator()(void *memory) const { std::free(memory); } // NOLINT(cppcoreguidelines-no-malloc): as xcb wants it
};

} // namespace

class XWindowOcclusion::Watch
{
  public:
    Watch(xcb_window_t window, std::function<void(bool)> observer)
        : m_observer(std::move(observer)), m_connection(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(m_connection.get()) != 0)
            return;
        const std::uint32_t visibility = XCB_EVENT_MASK_VISIBILITY_CHANGE;
        xcb_change_window_attributes(m_connection.get(), window, XCB_CW_EVENT_MASK, &visibility);
        xcb_flush(m_connection.get());
        m_news = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection.get()), QSocketNotifier::Read);
        QObject::connect(m_news.get(), &QSocketNotifier::activated, m_news.get(), [this] { read(); });
    }

  private:
    void read()
    {
        while (const auto event = next()) {
            // An error means that the window is not, or no longer, there: then there is nothing to tell.
            if ((event->response_type & ~sentByOthers) != XCB_VISIBILITY_NOTIFY)
                continue;
            const auto *change = reinterpret_cast<const xcb_visibility_notify_event_t *>(event.get());
            m_observer(change->state != XCB_VISIBILITY_FULLY_OBSCURED);
        }
        if (xcb_connection_has_error(m_connection.get()) != 0)
            m_news->setEnabled(false);
    }

    std::unique_ptr<xcb_generic_event_t, Free> next()
    {
        return std::unique_ptr<xcb_generic_event_t, Free>(xcb_poll_for_event(m_connection.get()));
    }

    static constexpr std::uint8_t sentByOthers = 0x80;

    std::function<void(bool)> m_observer;
    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    std::unique_ptr<QSocketNotifier> m_news;
};

XWindowOcclusion::XWindowOcclusion() = default;
XWindowOcclusion::~XWindowOcclusion() = default;

void XWindowOcclusion::observeWindowDidChangeOcclusionState(std::uintptr_t window, std::function<void(bool)> observer)
{
    m_watch.reset();
    // A Wayland desktop names an X server, too, and starts it for whoever connects; its own windows have made-up ids.
    const bool isXWindow = QGuiApplication::platformName() == QLatin1String("xcb");
    if (observer && isXWindow)
        m_watch = std::make_unique<Watch>(static_cast<xcb_window_t>(window), std::move(observer));
}

} // namespace tolvenary
