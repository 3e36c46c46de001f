#include "tests/session/support/child_process.h"
#include "tests/session/support/private_environment.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>

// What the script leaves in the user's configuration, and what it does not touch.

namespace tolvenary::session
{

namespace
{

namespace fs = std::filesystem;
using testing::HasSubstr;

class DeviceInstaller : public testing::Test
{
  protected:
    std::string run(const Arguments &arguments)
    {
        Arguments command = {TOLVENARY_INSTALLER};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return runToEnd(command);
    }

    fs::path serversFolder() const { return m_environment.configuration() / "pipewire"; }
    fs::path folder() const { return serversFolder() / "pipewire.conf.d"; }
    fs::path file(const std::string &channels) const
    {
        return folder() / ("tolvenary-blackhole-" + channels + ".conf");
    }

    static std::string contents(const fs::path &file)
    {
        std::ostringstream text;
        text << std::ifstream(file).rdbuf();
        return text.str();
    }

  private:
    PrivateEnvironment m_environment;
};

} // namespace

TEST_F(DeviceInstaller, putsTheDeviceWhereTheServerReadsIt)
{
    const std::string said = run({"install"});
    EXPECT_THAT(contents(file("2ch")), HasSubstr("node.description = \"BlackHole 2ch\""));
    EXPECT_FALSE(fs::exists(file("16ch")));
    EXPECT_THAT(said, HasSubstr(file("2ch").string()));
    EXPECT_THAT(said, HasSubstr("systemctl --user restart pipewire")) << "here nobody can restart it";
}

TEST_F(DeviceInstaller, putsTheWideDeviceBesideIt)
{
    run({"install"});
    run({"install", "16ch"});
    EXPECT_THAT(contents(file("16ch")), HasSubstr("node.description = \"BlackHole 16ch\""));
    EXPECT_TRUE(fs::exists(file("2ch")));
}

TEST_F(DeviceInstaller, removesWhatItMadeAndTheFoldersThatAreEmpty)
{
    run({"install"});
    run({"remove"});
    EXPECT_FALSE(fs::exists(serversFolder()));
}

TEST_F(DeviceInstaller, removesItWhereTheServersFolderIsALink)
{
    const fs::path elsewhere = serversFolder().parent_path() / "dotfiles";
    fs::create_directories(elsewhere);
    fs::create_directory_symlink(elsewhere, serversFolder());
    run({"install"});
    EXPECT_THAT(run({"remove"}), HasSubstr("is gone"));
    EXPECT_TRUE(fs::is_symlink(serversFolder()));
}

TEST_F(DeviceInstaller, letsOthersReadTheDeviceWhateverTheUmask)
{
    const mode_t before = umask(077);
    run({"install"});
    umask(before);
    EXPECT_NE(fs::status(file("2ch")).permissions() & fs::perms::others_read, fs::perms::none);
    EXPECT_NE(fs::status(folder()).permissions() & fs::perms::others_exec, fs::perms::none);
}

TEST_F(DeviceInstaller, leavesOtherSettingsAlone)
{
    fs::create_directories(folder());
    std::ofstream(folder() / "mine.conf") << "# mine\n";
    run({"install"});
    run({"remove"});
    EXPECT_EQ(contents(folder() / "mine.conf"), "# mine\n");
    EXPECT_FALSE(fs::exists(file("2ch")));
}

TEST_F(DeviceInstaller, removesNothingTwice)
{
    EXPECT_THAT(run({"remove"}), HasSubstr("There is no"));
}

TEST_F(DeviceInstaller, saysHowItIsCalledAndDoesNothingElse)
{
    // In the shell, as what is left of standard output shall be seen alone.
    for (const std::string asked : {"--help", "-h", "install --help"}) {
        const std::string said = runToEnd({"sh", "-c", "exec \"$0\" " + asked + " 2>/dev/null", TOLVENARY_INSTALLER});
        EXPECT_EQ(said, "usage: tolvenary-blackhole install|remove [--system] [2ch|16ch]\n") << asked;
    }
    EXPECT_FALSE(fs::exists(serversFolder()));
}

TEST_F(DeviceInstaller, refusesWhatItDoesNotUnderstand)
{
    EXPECT_THROW(run({}), std::runtime_error);
    EXPECT_THROW(run({"install", "3ch"}), std::runtime_error);
    EXPECT_THROW(run({"install", "remove"}), std::runtime_error);
    EXPECT_FALSE(fs::exists(serversFolder()));
}

} // namespace tolvenary::session
