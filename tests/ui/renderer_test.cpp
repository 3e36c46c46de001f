#include "app/renderer.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <map>

namespace tolvenary::test
{

namespace
{

constexpr std::array wishes{"QT_QUICK_BACKEND", "QSG_RHI_BACKEND", "QMLSCENE_DEVICE"};

/// A machine's device nodes, and a user without wishes.
class Renderer : public testing::Test
{
  protected:
    void SetUp() override
    {
        for (const char *wish : wishes) {
            m_before[wish] = qgetenv(wish);
            qunsetenv(wish);
        }
    }

    void TearDown() override
    {
        for (const auto &[wish, value] : m_before)
            if (!value.isNull())
                qputenv(wish, value);
    }

    void plug(const std::string &node)
    {
        const std::filesystem::path path = devices() / node;
        std::filesystem::create_directories(path.parent_path());
        ASSERT_TRUE(std::ofstream(path).is_open());
    }

    bool isSoftware() const { return wantsSoftwareRenderer(devices()); }

  private:
    std::filesystem::path devices() const { return m_devices.path().toStdString(); }

    QTemporaryDir m_devices;
    std::map<const char *, QByteArray> m_before;
};

} // namespace

TEST_F(Renderer, withoutGraphicsHardwareIsTheSoftwareRenderer)
{
    EXPECT_TRUE(isSoftware());
}

TEST_F(Renderer, aScreenThatCannotDrawIsNoGraphicsHardware)
{
    plug("dri/card0");
    plug("fb0");
    EXPECT_TRUE(isSoftware());
}

TEST_F(Renderer, withARenderNodeIsTheHardware)
{
    plug("dri/card1");
    plug("dri/renderD129");
    EXPECT_FALSE(isSoftware());
}

TEST_F(Renderer, withADriverThatHasNoRenderNodeIsTheHardware)
{
    plug("nvidiactl");
    EXPECT_FALSE(isSoftware());
}

TEST_F(Renderer, withACardOfTheHostIsTheHardware)
{
    plug("dxg");
    EXPECT_FALSE(isSoftware());
}

TEST_F(Renderer, aUsersOwnWishIsLeftAlone)
{
    for (const char *wish : wishes) {
        ASSERT_TRUE(isSoftware());
        qputenv(wish, "anything");
        EXPECT_FALSE(isSoftware()) << wish;
        qunsetenv(wish);
    }
}

} // namespace tolvenary::test
