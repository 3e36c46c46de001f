#include "tests/core/coordinator_fixture.h"

#include <QThread>
#include <gmock/gmock.h>

#include <thread>

using namespace tolvenary;
using namespace tolvenary::test;

namespace
{

const std::string screenRecordingFailure =
    "Start failed [screen-recording-permission]: Screen Recording permission required for app audio capture. Enable "
    "Tolvenary in System Settings → Privacy & Security → Screen Recording, then quit and relaunch the app. (Tolvenary "
    "13)";
const std::string microphoneDenied =
    "Start failed [mic-permission]: Microphone permission denied. Enable it in System Settings → Privacy & Security → "
    "Microphone. (Tolvenary 10)";
const std::string microphoneRefusal = "Start failed [mic-permission]: Microphone permission denied. (Tolvenary 11)";

class PermissionsTest : public CoordinatorTest
{
  protected:
    void SetUp() override { pickAll(); }

    void setMicrophone(AVAuthorizationStatus status) { m_platform.captureDevice().status.set(status); }
    int userWasAsked() { return calls().count("requestAccessForMediaType"); }
};

} // namespace

TEST_F(PermissionsTest, anAuthorizedMicrophonePassesWithoutAsking)
{
    start();
    EXPECT_TRUE(coordinator().isRunning());
    EXPECT_EQ(userWasAsked(), 0);
}

TEST_F(PermissionsTest, aStatusOfTheFuturePasses)
{
    setMicrophone(static_cast<AVAuthorizationStatus>(4));
    start();
    EXPECT_TRUE(coordinator().isRunning());
}

TEST_F(PermissionsTest, aDeniedOrRestrictedMicrophoneFailsWithCode10WithoutAsking)
{
    for (const auto denied : {AVAuthorizationStatus::denied, AVAuthorizationStatus::restricted}) {
        setMicrophone(denied);
        start();
        EXPECT_EQ(status(), microphoneDenied);
        EXPECT_FALSE(coordinator().isRunning());
    }
    EXPECT_EQ(userWasAsked(), 0);
    EXPECT_EQ(calls().count("CGPreflightScreenCaptureAccess"), 0) << "the steps behind it do not run";
}

TEST_F(PermissionsTest, anUndeterminedMicrophoneIsAskedForAndAGrantPasses)
{
    setMicrophone(AVAuthorizationStatus::notDetermined);
    start();
    EXPECT_EQ(userWasAsked(), 1);
    EXPECT_TRUE(coordinator().isRunning());
}

TEST_F(PermissionsTest, anUndeterminedMicrophoneThatIsRefusedFailsWithCode11)
{
    setMicrophone(AVAuthorizationStatus::notDetermined);
    m_platform.captureDevice().granted.set(false);
    start();
    EXPECT_EQ(status(), microphoneRefusal);
    EXPECT_FALSE(coordinator().isRunning());
    EXPECT_FALSE(m_platform.holdsAnything());
}

TEST_F(PermissionsTest, theStartWaitsForTheUserAndGoesOnOnTheMainThread)
{
    setMicrophone(AVAuthorizationStatus::notDetermined);
    m_platform.captureDevice().granted.holdBack();
    start();
    EXPECT_FALSE(coordinator().isRunning());
    EXPECT_EQ(status(), "Idle");
    EXPECT_EQ(calls().count("makeOutputUnit"), 0);

    QThread *continuedOn = nullptr;
    QObject::connect(
        &coordinator(), &MixCoordinator::isRunningChanged, &coordinator(),
        [&] { continuedOn = QThread::currentThread(); }, Qt::DirectConnection);
    std::thread([this] { m_platform.captureDevice().granted.deliver(); }).join();
    EXPECT_FALSE(coordinator().isRunning());
    ASSERT_TRUE(waitUntil([this] { return coordinator().isRunning(); }));
    EXPECT_EQ(continuedOn, QThread::currentThread());
}

TEST_F(PermissionsTest, theStatusMayComeFromAnotherThreadToo)
{
    m_platform.captureDevice().status.holdBack();
    start();
    std::thread([this] { m_platform.captureDevice().status.deliver(); }).join();
    EXPECT_TRUE(waitUntil([this] { return coordinator().isRunning(); }));
}

TEST_F(PermissionsTest, refusedScreenRecordingFailsWithCode13AndAsksOnceMoreEachTime)
{
    m_platform.screenCaptureAccess().preflight = false;
    for (int attempt = 1; attempt <= 3; ++attempt) {
        start();
        EXPECT_EQ(status(), screenRecordingFailure);
        EXPECT_EQ(calls().count("CGRequestScreenCaptureAccess"), attempt);
        EXPECT_FALSE(coordinator().isRunning());
        EXPECT_EQ(calls().count("makeOutputUnit"), 0);
    }
}

TEST_F(PermissionsTest, theRequestsResultIsNotUsed)
{
    m_platform.screenCaptureAccess().preflight = false;
    m_platform.screenCaptureAccess().request = true;
    start();
    EXPECT_EQ(status(), screenRecordingFailure);
}

TEST_F(PermissionsTest, grantedScreenRecordingIsNotRequested)
{
    start();
    EXPECT_EQ(calls().count("CGPreflightScreenCaptureAccess"), 1);
    EXPECT_EQ(calls().count("CGRequestScreenCaptureAccess"), 0);
}

TEST_F(PermissionsTest, theSoundServerIsSettledBeforeAnyPermissionIsChecked)
{
    m_platform.audioServer().answered.holdBack();
    start();
    EXPECT_EQ(calls().count("settle"), 1);
    EXPECT_EQ(calls().count("authorizationStatusForMediaType"), 0);
    EXPECT_EQ(calls().count("CGPreflightScreenCaptureAccess"), 0);
    EXPECT_EQ(status(), "Idle");
    std::thread([this] { m_platform.audioServer().answered.deliver(); }).join();
    EXPECT_TRUE(waitUntil([this] { return coordinator().isRunning(); }));
}

TEST_F(PermissionsTest, aSoundServerThatDoesNotAnswerIsReportedByTheStageThatNeedsIt)
{
    m_platform.audioServer().answered.set(false);
    calls().fail("AudioUnitSetProperty", -110);
    start();
    EXPECT_EQ(status(), "Start failed [output-engine]: Failed to bind output to BlackHole (OSStatus -110). "
                        "(NSOSStatusErrorDomain -110)");
}
