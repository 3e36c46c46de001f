#include "tests/session/heartbeat.h"
#include "tests/session/listening.h"
#include "tests/session/stepped_platform.h"

#include <QCoro/QCoroTask>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

using namespace std::chrono_literals;

constexpr qint64 frozen = 2000;

const std::string givenUp = "The sound server went away. Press Start again once it is back.";

const std::vector<std::string> stepsOfAStart = {"ask for the microphone", "ask for the screen", "bind the output",
                                                "read the binding",       "start the output",   "read the input format",
                                                "start the input",        "create the tap",     "create the aggregate",
                                                "create the callback",    "start the tap"};
const std::vector<std::string> stepsOfAStop = {"stop the tap",    "destroy the callback", "destroy the aggregate",
                                               "destroy the tap", "stop the input",       "stop the output"};

const std::vector<std::chrono::milliseconds> moments = {0ms, 1ms, 2ms, 5ms, 10ms, 20ms, 50ms};

/// Expects of the main thread that it is not frozen for as long as this lives.
class FreezeCheck
{
  public:
    FreezeCheck() = default;
    ~FreezeCheck()
    {
        const qint64 pause = m_heartbeat.longestPause();
        std::printf("  longest pause %lld ms\n", static_cast<long long>(pause));
        EXPECT_LT(pause, frozen);
    }
    FreezeCheck(const FreezeCheck &) = delete;
    FreezeCheck &operator=(const FreezeCheck &) = delete;

  private:
    Heartbeat m_heartbeat;
};

/// Kills a process so long after it was made, whatever is being done then.
class LaterKill
{
  public:
    LaterKill(pid_t victim, std::chrono::milliseconds delay)
        : m_thread([=] {
              std::this_thread::sleep_for(delay);
              ::kill(victim, SIGKILL);
          })
    {
    }
    ~LaterKill() { m_thread.join(); }
    LaterKill(const LaterKill &) = delete;
    LaterKill &operator=(const LaterKill &) = delete;

  private:
    std::thread m_thread;
};

/// The program looks for a server three times a second: a Re-scan may be too early.
bool findsAll(MixBed &bed, MixCoordinator &mix)
{
    return bed.waitFor([&] {
        bed.settle();
        mix.refreshBlackHole();
        QCoro::waitFor(mix.refreshApps());
        const auto isPlayer = [&](const SCRunningApplication &app) { return app.processID == bed.player()->pid(); };
        return mix.selectedBlackHole() && std::ranges::any_of(mix.availableApps(), isPlayer);
    });
}

/// A mix whose sound server is killed before a step of its choice.
class KilledMix
{
  public:
    std::string status() const { return m_mix.status().toStdString(); }
    bool isRunning() const { return m_mix.isRunning(); }

    void killBefore(const std::string &step) { m_deadly = step; }
    bool wasKilled() const { return m_deadly.empty(); }

    /// What the user does: Re-scan both lists until they show what is there, pick, Start.
    void scan()
    {
        EXPECT_TRUE(findsAll(m_bed, m_mix));
        m_mix.setSelectedAppID(m_bed.player()->pid());
    }
    void start() { QCoro::waitFor(m_mix.start()); }
    void scanAndStart()
    {
        scan();
        start();
    }
    void startKilledAfter(std::chrono::milliseconds delay)
    {
        const LaterKill kill(m_bed.session().soundServer(), delay);
        start();
    }
    void stopKilledAfter(std::chrono::milliseconds delay)
    {
        const LaterKill kill(m_bed.session().soundServer(), delay);
        stop();
    }
    /// Until the program knows of it.
    void settle() { m_bed.settle(); }
    void stop()
    {
        m_mix.teardown();
        m_mix.setStatus(QStringLiteral("Stopped"));
    }
    void restart()
    {
        m_bed.unplugAll();
        m_bed.session().restartSoundServers();
        m_bed.plugAll();
    }
    bool bothSourcesDeliver()
    {
        return m_bed.waitFor([&] { return m_mix.micFrames() > 0 && m_mix.appFrames() > 0; });
    }
    bool becomesGivenUp()
    {
        return m_bed.waitFor([&] { return !isRunning() && status() == givenUp; });
    }

  private:
    MixBed m_bed;
    std::string m_deadly;
    SteppedPlatform m_platform{m_bed.platform(), [this](const std::string &step) {
                                   if (step == m_deadly) {
                                       m_deadly.clear();
                                       m_bed.session().kill(SoundServer::pipewire);
                                   }
                                   return noErr;
                               }};
    MixCoordinator m_mix{m_platform};
};

/// The microphone is not to blame, though it is gone with the server.
void expectFailureOfTheServer(const std::string &status)
{
    EXPECT_THAT(status, testing::StartsWith("Start failed ["));
    EXPECT_THAT(status, testing::Not(testing::HasSubstr("No microphone input available")));
}

/// A session manager gives the devices new ports some time after it has begun. The mix links them by itself; who speaks
/// and who listens here must do it anew, and perhaps again.
bool isHeardByNewEars(MixBed &bed)
{
    for (int attempt = 0; attempt < 10; ++attempt) {
        bed.voice().reset();
        bed.voice() = speakInto(bed.session(), "microphone", {"MONO=tone:997:0.25"});
        Recorder recorder(bed.session(), {bed.monitor("FL")});
        bed.record(recorder, 9600);
        const Heard heard = listen(bed, recorder);
        if (isLevel(heard.microphone, theWholeMix.microphone) && isLevel(heard.application, theWholeMix.application))
            return true;
    }
    return false;
}

} // namespace

TEST(KilledServer, endsTheRunAndSaysWhatToDoAndTheNextStartWorks)
{
    MixBed bed;
    bed.run();
    Heartbeat heartbeat;
    bed.session().kill(SoundServer::pipewire);
    EXPECT_TRUE(statusBecomes(bed, givenUp)) << bed.status();
    EXPECT_FALSE(bed.isRunning());
    std::printf("  longest pause %lld ms\n", static_cast<long long>(heartbeat.longestPause()));
    EXPECT_LT(heartbeat.longestPause(), frozen);
    bed.unplugAll();
    bed.session().restartSoundServers();
    bed.plugAll();
    ASSERT_TRUE(findsAll(bed, bed.mix()));
    bed.run();
    EXPECT_EQ(MixBed::nodesOfProgram(SoundGraph::read()).size(), 4U);
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    EXPECT_TRUE(becomesHeard(bed, recorder, theWholeMix));
}

TEST(KilledServer, inAnyStepOfAStartIsAStatusAndTheNextStartWorks)
{
    KilledMix mix;
    for (const std::string &step : stepsOfAStart) {
        SCOPED_TRACE(step);
        mix.killBefore(step);
        Heartbeat heartbeat;
        mix.scanAndStart();
        const qint64 pause = heartbeat.longestPause();
        std::printf("  before \"%s\": %s, longest pause %lld ms\n", step.c_str(), mix.status().c_str(),
                    static_cast<long long>(pause));
        ASSERT_TRUE(mix.wasKilled()) << step;
        EXPECT_LT(pause, frozen) << step;
        if (mix.isRunning())
            EXPECT_TRUE(mix.becomesGivenUp()) << step << ": " << mix.status();
        else
            expectFailureOfTheServer(mix.status());
        mix.restart();
    }
    mix.scanAndStart();
    EXPECT_EQ(mix.status(), "Running. In Discord, set Input to BlackHole 2ch.");
    EXPECT_TRUE(mix.bothSourcesDeliver());
}

TEST(KilledServer, inAnyStepOfAStopLetsItEndAndTheNextStartWorks)
{
    KilledMix mix;
    for (const std::string &step : stepsOfAStop) {
        mix.scanAndStart();
        ASSERT_TRUE(mix.isRunning()) << step << ": " << mix.status();
        ASSERT_TRUE(mix.bothSourcesDeliver()) << step;
        mix.killBefore(step);
        Heartbeat heartbeat;
        mix.stop();
        const qint64 pause = heartbeat.longestPause();
        std::printf("  before \"%s\": stopped after %lld ms\n", step.c_str(), static_cast<long long>(pause));
        ASSERT_TRUE(mix.wasKilled()) << step;
        EXPECT_LT(pause, frozen) << step;
        EXPECT_FALSE(mix.isRunning());
        mix.restart();
    }
    mix.scanAndStart();
    EXPECT_TRUE(mix.bothSourcesDeliver()) << mix.status();
}

TEST(KilledServer, atAnyMomentOfAStartIsAStatusAndTheNextStartWorks)
{
    KilledMix mix;
    for (const auto moment : moments) {
        SCOPED_TRACE(std::to_string(moment.count()) + " ms");
        mix.scan();
        {
            const FreezeCheck check;
            mix.startKilledAfter(moment);
            std::printf("  after %ld ms: %s\n", static_cast<long>(moment.count()), mix.status().c_str());
            if (mix.isRunning())
                EXPECT_TRUE(mix.becomesGivenUp()) << mix.status();
            else
                expectFailureOfTheServer(mix.status());
            EXPECT_FALSE(mix.isRunning());
        }
        mix.restart();
        mix.scanAndStart();
        EXPECT_EQ(mix.status(), "Running. In Discord, set Input to BlackHole 2ch.");
        EXPECT_TRUE(mix.bothSourcesDeliver());
        mix.stop();
    }
}

TEST(KilledServer, atAnyMomentOfAStopLetsItEndAndTheNextStartWorks)
{
    KilledMix mix;
    mix.scanAndStart();
    for (const auto moment : moments) {
        SCOPED_TRACE(std::to_string(moment.count()) + " ms");
        ASSERT_TRUE(mix.bothSourcesDeliver()) << mix.status();
        {
            const FreezeCheck check;
            mix.stopKilledAfter(moment);
            EXPECT_FALSE(mix.isRunning());
            mix.settle();
            EXPECT_FALSE(mix.isRunning());
            EXPECT_EQ(mix.status(), "Stopped");
        }
        mix.restart();
        mix.scanAndStart();
        EXPECT_EQ(mix.status(), "Running. In Discord, set Input to BlackHole 2ch.");
    }
    EXPECT_TRUE(mix.bothSourcesDeliver()) << mix.status();
}

TEST(KilledServer, thatOnlyManagesSessionsIsNotMissed)
{
    // A loopback's nodes do not survive that a new session manager sets them up again; a sink does.
    MixBed bed({.deviceKind = DeviceKind::nullSink});
    bed.run();
    {
        const FreezeCheck check;
        bed.session().kill(SoundServer::sessionManager);
        ASSERT_TRUE(bed.waitForGraph(
            [](const SoundGraph &graph) { return graph.metadata.count("default/default.audio.source") == 0; }));
        const auto before = bed.mix().appFrames();
        EXPECT_TRUE(bed.waitFor([&] { return bed.mix().appFrames() > before + 96000; })) << "two seconds";
    }
    EXPECT_TRUE(isHeardByNewEars(bed));
    EXPECT_TRUE(statusBecomes(bed, "Running → ")) << bed.status();
    bed.session().startSessionManager();
    ASSERT_TRUE(bed.waitForGraph(
        [](const SoundGraph &graph) { return graph.defaultNode("default.audio.source") == "microphone"; }));
    EXPECT_TRUE(isHeardByNewEars(bed));
    EXPECT_TRUE(bed.isRunning());
}

TEST(KilledServer, thatOnlyServesPulseClientsTakesThoseAndNothingElse)
{
    MixBedOptions options;
    options.configuration.pulse = true;
    MixBed bed(options);
    const auto client = playPulseClient(bed.session(), {"tone:600:0.3", "tone:600:0.3"});
    bed.run();
    Recorder recorder(bed.session(), {bed.monitor("FL")});
    ASSERT_TRUE(becomesHeard(bed, recorder, {0.25, 0.3, 0.2}));
    {
        const FreezeCheck check;
        bed.session().kill(SoundServer::pulse);
        EXPECT_TRUE(becomesHeard(bed, recorder, theWholeMix));
    }
    EXPECT_TRUE(statusBecomes(bed, "Running → ")) << bed.status();
}

} // namespace tolvenary::session
