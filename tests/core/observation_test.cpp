#include "tests/core/coordinator_fixture.h"

#include <gmock/gmock.h>

#include <functional>

using namespace tolvenary;
using namespace tolvenary::test;
using testing::ElementsAre;

namespace
{

class ObservationTest : public CoordinatorTest
{
  protected:
    using Seen = std::vector<std::string>;

    /// Notes the field's value at each announcement and at each change of it.
    void observe(void (MixCoordinator::*changed)(), const std::function<std::string()> &value)
    {
        QObject::connect(&coordinator(), &MixCoordinator::objectWillChange, &coordinator(),
                         [this, value] { m_seen.push_back("before " + value()); });
        QObject::connect(&coordinator(), changed, &coordinator(),
                         [this, value] { m_seen.push_back("after " + value()); });
    }
    Seen takeSeen() { return std::exchange(m_seen, {}); }

    Seen m_seen;
};

} // namespace

TEST_F(ObservationTest, aPickIsAnnouncedBeforeItTakesEffectAndToldAfterwards)
{
    observe(&MixCoordinator::selectedAppIDChanged,
            [this] { return std::to_string(coordinator().selectedAppID().value_or(-1)); });
    coordinator().setSelectedAppID(7);
    EXPECT_THAT(takeSeen(), ElementsAre("before -1", "after 7"));
    coordinator().setSelectedAppID(std::nullopt);
    EXPECT_THAT(takeSeen(), ElementsAre("before 7", "after -1"));
}

TEST_F(ObservationTest, theSameValueIsAnnouncedButNoChange)
{
    observe(&MixCoordinator::statusChanged, [this] { return status(); });
    coordinator().setStatus(QStringLiteral("Idle"));
    EXPECT_THAT(takeSeen(), ElementsAre("before Idle"));
}

TEST_F(ObservationTest, gainsAreAnnouncedBeforeAndToldAfter)
{
    observe(&MixCoordinator::micGainChanged, [this] { return std::to_string(coordinator().micGain()); });
    coordinator().setMicGain(0.5F);
    EXPECT_THAT(takeSeen(), ElementsAre("before 1.000000", "after 0.500000"));
}

TEST_F(ObservationTest, theAppGainTellsOfItselfToo)
{
    observe(&MixCoordinator::appGainChanged, [this] { return std::to_string(coordinator().appGain()); });
    coordinator().setAppGain(2);
    EXPECT_THAT(takeSeen(), ElementsAre("before 1.000000", "after 2.000000"));
}

TEST_F(ObservationTest, theDeviceListIsOnePublishedChangeAndTheSelectionAnother)
{
    addDevice(blackHole);
    observe(&MixCoordinator::blackHoleDevicesChanged, [this] {
        return std::to_string(coordinator().blackHoleDevices().size()) + " devices, " +
               (coordinator().selectedBlackHole() ? "one" : "none") + " selected";
    });
    coordinator().refreshBlackHole();
    EXPECT_THAT(takeSeen(), ElementsAre("before 0 devices, none selected", "after 1 devices, none selected",
                                        "before 1 devices, none selected"));
    coordinator().refreshBlackHole();
    EXPECT_THAT(takeSeen(), ElementsAre("before 1 devices, one selected")) << "a selection that stays is not written";
}

TEST_F(ObservationTest, theSelectionTellsOfItselfAfterItsChange)
{
    addDevice(blackHole);
    std::vector<AudioObjectID> told;
    QObject::connect(&coordinator(), &MixCoordinator::selectedBlackHoleChanged, &coordinator(),
                     [&] { told.push_back(coordinator().selectedBlackHole()->id); });
    coordinator().refreshBlackHole();
    EXPECT_THAT(told, ElementsAre(blackHole));
}

TEST_F(ObservationTest, theApplicationListIsPublishedInOnePiece)
{
    setApplications({{"B", 1, ""}, {"A", 2, ""}});
    observe(&MixCoordinator::availableAppsChanged,
            [this] { return std::to_string(coordinator().availableApps().size()); });
    refreshApps();
    EXPECT_THAT(takeSeen(), ElementsAre("before 0", "after 2"));
}

TEST_F(ObservationTest, aStartPublishesTheCountsThenThatItRunsThenTheStatus)
{
    pickAll();
    const auto state = [this] { return (coordinator().isRunning() ? "running, " : "stopped, ") + status(); };
    observe(&MixCoordinator::isRunningChanged, state);
    start();
    const std::string text = "Running. In Discord, set Input to BlackHole 2ch.";
    EXPECT_THAT(takeSeen(), ElementsAre("before stopped, Idle", "before stopped, Idle", // the two counts
                                        "before stopped, Idle", "after running, Idle", "before running, Idle"));
    EXPECT_EQ(status(), text);
}

TEST_F(ObservationTest, aTickPublishesTheCountsBeforeTheStatus)
{
    pickAllAndStart();
    inputCycle(0.1F, 10);
    tapCycle(0.1F, 20);
    std::vector<std::string> order;
    const auto note = [&](void (MixCoordinator::*changed)(), const char *name) {
        QObject::connect(&coordinator(), changed, &coordinator(), [&order, name] { order.emplace_back(name); });
    };
    note(&MixCoordinator::statusChanged, "status");
    note(&MixCoordinator::micFramesChanged, "micFrames");
    note(&MixCoordinator::appFramesChanged, "appFrames");
    passTicks(1);
    EXPECT_THAT(order, ElementsAre("micFrames", "appFrames", "status"));
}

TEST_F(ObservationTest, aStartThatIsRefusedPublishesItsTextAlone)
{
    observe(&MixCoordinator::statusChanged, [this] { return status(); });
    start();
    EXPECT_THAT(takeSeen(), ElementsAre("before Idle", "after Pick an app first."));
}
