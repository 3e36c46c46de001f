#pragma once

#include "tests/platform/desktop/event_loop.h"
#include "tests/platform/desktop/stub_services.h"

#include <memory>
#include <string>

namespace tolvenary
{

/// A session whose desktop, "Test", has chosen a portal backend for one interface. The backend runs once it is started.
class PortalFixture : public testing::Test
{
  protected:
    explicit PortalFixture(std::string interface) : m_interface(std::move(interface)) {}

    void SetUp() override
    {
        ASSERT_TRUE(session.isReady());
        qputenv("XDG_CURRENT_DESKTOP", "Test");
        session.folder().write("share/xdg-desktop-portal/portals/test.portal",
                               "[portal]\nDBusName=org.example.portal.Test\nInterfaces=" + m_interface +
                                   "\nUseIn=test\n");
    }

    void startBackend()
    {
        backend = std::make_unique<StubService>(session, QStringLiteral("org.example.portal.Test"),
                                                QStringLiteral("/org/freedesktop/portal/desktop"));
        ASSERT_TRUE(backend->isThere());
    }

    bool isAsked()
    {
        return spinUntil([this] { return !backend->calls().empty(); });
    }

    PrivateSession session{PrivateSession::Store::installed};
    std::unique_ptr<StubService> backend;

  private:
    std::string m_interface;
};

} // namespace tolvenary
