#include "platform/desktop/portal_backends.h"
#include "tests/platform/desktop/scoped_variable.h"
#include "tests/platform/desktop/temporary_folder.h"

#include <gtest/gtest.h>

namespace tolvenary
{

namespace
{

constexpr auto *access = "org.freedesktop.impl.portal.Access";

class PortalBackends : public testing::Test
{
  protected:
    void install(const std::string &name, const std::string &useIn, const std::string &interfaces = access,
                 const std::string &data = "data")
    {
        m_folder.write(data + "/xdg-desktop-portal/portals/" + name + ".portal",
                       "[portal]\nDBusName=bus." + name + "\nInterfaces=org.x.Other;" + interfaces +
                           ";\nUseIn=" + useIn + "\n");
    }

    void configure(const std::string &file, const std::string &preferred)
    {
        m_folder.write("config/xdg-desktop-portal/" + file, "[preferred]\n" + preferred + "\n");
    }

    std::string chosen(const std::vector<std::string> &desktops = {})
    {
        const auto root = m_folder.path().string();
        return portalBackendFor(access,
                                {{root + "/config", root + "/data"}, {root + "/data", root + "/more"}, desktops})
            .value_or("none");
    }

    const TemporaryFolder m_folder;
};

TEST_F(PortalBackends, withoutABackendThereIsNone)
{
    EXPECT_EQ(chosen({"gnome"}), "none");
}

TEST_F(PortalBackends, aBackendWithoutTheInterfaceIsNotChosen)
{
    install("gnome", "gnome", "org.freedesktop.impl.portal.FileChooser");
    EXPECT_EQ(chosen({"gnome"}), "none");
}

TEST_F(PortalBackends, aBackendMadeForTheDesktopIsChosen)
{
    install("gnome", "GNOME");
    install("kde", "KDE");
    EXPECT_EQ(chosen({"kde"}), "bus.kde");
    EXPECT_EQ(chosen({"budgie", "gnome"}), "bus.gnome");
}

TEST_F(PortalBackends, theCommonBackendServesADesktopWithoutOneOfItsOwn)
{
    install("gtk", "gnome");
    install("kde", "KDE");
    EXPECT_EQ(chosen({"sway"}), "bus.gtk");
    EXPECT_EQ(chosen(), "bus.gtk");
}

TEST_F(PortalBackends, aForeignDesktopsBackendIsNotChosen)
{
    install("kde", "KDE");
    EXPECT_EQ(chosen({"sway"}), "none");
}

TEST_F(PortalBackends, theConfigurationGoesBeforeTheBackendsWish)
{
    install("gnome", "gnome");
    install("shell", "");
    configure("portals.conf", std::string("default=gnome\n") + access + "=absent;shell;gnome;");
    EXPECT_EQ(chosen({"gnome"}), "bus.shell");
}

TEST_F(PortalBackends, theDefaultOfTheConfigurationServesInterfacesItDoesNotName)
{
    install("gnome", "gnome");
    install("shell", "");
    configure("portals.conf", "default=shell");
    EXPECT_EQ(chosen({"gnome"}), "bus.shell");
}

TEST_F(PortalBackends, aDesktopsOwnConfigurationGoesBeforeTheCommonOne)
{
    install("a", "");
    install("b", "");
    configure("portals.conf", "default=a");
    configure("sway-portals.conf", "default=b");
    EXPECT_EQ(chosen({"sway"}), "bus.b");
    EXPECT_EQ(chosen({"gnome"}), "bus.a");
}

TEST_F(PortalBackends, theUsersConfigurationGoesBeforeTheSystems)
{
    install("a", "");
    install("b", "");
    m_folder.write("data/xdg-desktop-portal/sway-portals.conf", "[preferred]\ndefault=a\n");
    EXPECT_EQ(chosen({"sway"}), "bus.a");
    configure("portals.conf", "default=b");
    EXPECT_EQ(chosen({"sway"}), "bus.b");
}

TEST_F(PortalBackends, aStarTakesTheFirstByName)
{
    install("zeta", "sway");
    install("alpha", "");
    configure("portals.conf", "default=*");
    EXPECT_EQ(chosen({"sway"}), "bus.alpha");
}

TEST_F(PortalBackends, aUserWhoWantsNoneGetsNone)
{
    install("gtk", "sway");
    configure("portals.conf", std::string("default=gtk\n") + access + "=none");
    EXPECT_EQ(chosen({"sway"}), "none");
}

TEST_F(PortalBackends, aConfigurationThatNamesOnlyAbsentBackendsIsPassedOver)
{
    install("gtk", "");
    configure("portals.conf", "default=absent");
    EXPECT_EQ(chosen({"sway"}), "bus.gtk");
}

TEST_F(PortalBackends, theMoreImportantDirectorysDescriptionHolds)
{
    install("gtk", "", access, "more");
    m_folder.write("data/xdg-desktop-portal/portals/gtk.portal",
                   std::string("[portal]\nDBusName=bus.mine\nInterfaces=") + access + "\n");
    EXPECT_EQ(chosen(), "bus.mine");
}

TEST_F(PortalBackends, aBrokenDescriptionIsPassedOver)
{
    m_folder.write("data/xdg-desktop-portal/portals/gtk.portal", "not a key file");
    m_folder.write("data/xdg-desktop-portal/portals/a.portal", std::string("[portal]\nInterfaces=") + access + "\n");
    EXPECT_EQ(chosen(), "none");
}

TEST_F(PortalBackends, theEnvironmentNamesTheDirectoriesAndTheDesktops)
{
    const auto root = m_folder.path().string();
    const ScopedVariable dataHome("XDG_DATA_HOME", root + "/home");
    const ScopedVariable dataDirs("XDG_DATA_DIRS", root + "/one:" + root + "/two");
    const ScopedVariable configHome("XDG_CONFIG_HOME", root + "/config");
    const ScopedVariable configDirs("XDG_CONFIG_DIRS", root + "/etc");
    const ScopedVariable desktops("XDG_CURRENT_DESKTOP", "Budgie:GNOME");
    const auto directories = portalDirectories();
    const std::vector<std::string> data = {root + "/home", root + "/one", root + "/two"};
    EXPECT_EQ(directories.data, data);
    EXPECT_EQ(directories.configuration,
              (std::vector<std::string>{root + "/config", root + "/etc", data[0], data[1], data[2]}));
    EXPECT_EQ(directories.desktops, (std::vector<std::string>{"budgie", "gnome"}));
}

} // namespace

} // namespace tolvenary
