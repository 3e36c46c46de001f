#include "platform/desktop/desktop_workspace.h"
#include "tests/platform/desktop/event_loop.h"
#include "tests/platform/desktop/private_session.h"
#include "tests/platform/desktop/stub_services.h"

#include <QDBusMetaType>
#include <QDBusVariant>
#include <QMap>
#include <optional>

namespace tolvenary
{

namespace
{

using Namespaces = QMap<QString, QVariantMap>;

const QString common = QStringLiteral("org.freedesktop.appearance");
const QString gnome = QStringLiteral("org.gnome.desktop.interface");
const QString kde = QStringLiteral("org.kde.kdeglobals.KDE");
const QString reducedMotion = QStringLiteral("reduced-motion");
const QString enableAnimations = QStringLiteral("enable-animations");
const QString animationDurationFactor = QStringLiteral("AnimationDurationFactor");

/// A session with a settings portal.
class ReducedMotion : public testing::Test
{
  protected:
    void SetUp() override
    {
        qDBusRegisterMetaType<Namespaces>();
        ASSERT_TRUE(session.isReady());
        portal = std::make_unique<StubService>(session, QStringLiteral("org.freedesktop.portal.Desktop"),
                                               QStringLiteral("/org/freedesktop/portal/desktop"));
        ASSERT_TRUE(portal->isThere());
        workspace.emplace();
        workspace->observeAccessibilityDisplayOptionsDidChange([this] { ++changes; });
    }

    bool isReduced() { return workspace->accessibilityDisplayShouldReduceMotion(); }

    /// Lets the portal answer the one question that it is asked.
    void answer(const Namespaces &settings)
    {
        ASSERT_TRUE(spinUntil([this] { return portal->calls().size() == 1; }));
        EXPECT_EQ(portal->calls()[0].member, QStringLiteral("ReadAll"));
        portal->answer(portal->calls()[0], {QVariant::fromValue(settings)});
        ASSERT_TRUE(spinUntil([this] { return changes == 1; }));
    }

    void change(const QString &space, const QString &key, const QVariant &value)
    {
        portal->signal(QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"),
                       {space, key, QVariant::fromValue(QDBusVariant(value))});
    }

    PrivateSession session{PrivateSession::Store::absent};
    std::unique_ptr<StubService> portal;
    std::optional<DesktopWorkspace> workspace;
    int changes = 0;
};

TEST_F(ReducedMotion, thePortalIsAskedForTheSettingsOfAllDesktops)
{
    ASSERT_TRUE(spinUntil([this] { return !portal->calls().empty(); }));
    EXPECT_EQ(portal->calls()[0].arguments, QVariantList{QVariant(QStringList{common, gnome, kde})});
}

TEST_F(ReducedMotion, aDesktopWithoutTheSettingMoves)
{
    answer({});
    EXPECT_FALSE(isReduced());
}

TEST_F(ReducedMotion, aDesktopThatHasNoPreferenceMoves)
{
    answer({{common, {{reducedMotion, 0U}, {QStringLiteral("contrast"), 1U}}},
            {gnome, {{enableAnimations, true}}},
            {kde, {{animationDurationFactor, 0.5}}}});
    EXPECT_FALSE(isReduced());
}

TEST_F(ReducedMotion, theCommonSettingIsHeeded)
{
    answer({{common, {{reducedMotion, 1U}}}});
    EXPECT_TRUE(isReduced());
}

TEST_F(ReducedMotion, animationsThatAreOffAreHeeded)
{
    answer({{common, {{reducedMotion, 0U}}}, {gnome, {{enableAnimations, false}}}});
    EXPECT_TRUE(isReduced());
}

TEST_F(ReducedMotion, animationsThatTakeNoTimeAreHeeded)
{
    answer({{kde, {{animationDurationFactor, 0.0}}}});
    EXPECT_TRUE(isReduced());
}

TEST_F(ReducedMotion, aDurationMayComeInLetters)
{
    answer({{kde, {{animationDurationFactor, QStringLiteral("0")}}}});
    EXPECT_TRUE(isReduced());
}

TEST_F(ReducedMotion, aDurationThatIsNoNumberSaysNothing)
{
    answer({{kde, {{animationDurationFactor, QString()}}}});
    EXPECT_FALSE(isReduced());
}

TEST_F(ReducedMotion, aChangeIsFollowedWhileTheProgramRuns)
{
    answer({});
    change(common, reducedMotion, 1U);
    ASSERT_TRUE(spinUntil([this] { return changes == 2; }));
    EXPECT_TRUE(isReduced());
    change(common, reducedMotion, 0U);
    ASSERT_TRUE(spinUntil([this] { return changes == 3; }));
    EXPECT_FALSE(isReduced());
}

TEST_F(ReducedMotion, oneSettingDoesNotTakeBackWhatAnotherAsksFor)
{
    answer({{gnome, {{enableAnimations, false}}}});
    change(kde, animationDurationFactor, 1.0);
    ASSERT_TRUE(spinUntil([this] { return changes == 2; }));
    EXPECT_TRUE(isReduced());
}

TEST_F(ReducedMotion, aPortalThatHangsLeavesTheDesktopsOwnSetting)
{
    ASSERT_TRUE(spinUntil([this] { return !portal->calls().empty(); }));
    EXPECT_FALSE(isReduced());
    EXPECT_EQ(changes, 0);
}

TEST_F(ReducedMotion, anAnswerMayComeWhenTheProgramIsGone)
{
    ASSERT_TRUE(spinUntil([this] { return !portal->calls().empty(); }));
    workspace.reset();
    portal->answer(portal->calls()[0], {QVariant::fromValue(Namespaces{{common, {{reducedMotion, 1U}}}})});
    change(common, reducedMotion, 0U);
    QCoreApplication::processEvents();
    EXPECT_EQ(changes, 0);
}

} // namespace

} // namespace tolvenary
