#include "platform/audio_server.h"
#include "tests/session/own_player.h"
#include "tests/session/stream_ears.h"
#include "tests/session/support/tone_level.h"

#include <QElapsedTimer>
#include <atomic>
#include <cmath>
#include <future>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace tolvenary::session
{

namespace
{

using namespace std::chrono_literals;
using testing::IsEmpty;

constexpr double playerTone = 1499; // the bed's player, at 0.2
constexpr double otherTone = 700;
constexpr double ownTone = 500;

/// Applications alone; who wants a mix asks for more.
MixBedOptions noMix(Application player = {})
{
    return {.device = false, .microphone = false, .player = std::move(player)};
}

std::unique_ptr<ChildProcess> playOther(MixBed &bed)
{
    return playApplication(bed.session(), {.nodeName = "other", .channels = {"FL=tone:700:0.3", "FR=tone:700:0.3"}});
}

bool hasStreamNode(const SoundGraph &graph)
{
    return graph.node("com.tolvenary.stream") != nullptr;
}

bool hasNoNodes(const SoundGraph &graph)
{
    return MixBed::nodesOfProgram(graph).empty();
}

/// Keeps the program from learning what happens in the graph, for its life.
class ControlThreadHold
{
  public:
    explicit ControlThreadHold(MixBed &bed)
    {
        const auto end = std::make_shared<std::future<void>>(m_end.get_future());
        const auto begun = std::make_shared<std::promise<void>>();
        bed.platform().audioServer().settle([end, begun](bool) {
            begun->set_value();
            end->wait();
        });
        begun->get_future().wait();
    }
    ~ControlThreadHold() { m_end.set_value(); }
    ControlThreadHold(const ControlThreadHold &) = delete;
    ControlThreadHold &operator=(const ControlThreadHold &) = delete;

  private:
    std::promise<void> m_end;
};

void expectTone(const char *what, double heard, double wanted)
{
    std::printf("  %-12s %.5f (want %.2f)\n", what, heard, wanted);
    if (wanted == 0)
        EXPECT_LT(heard, 1e-5) << what;
    else
        EXPECT_LT(std::abs(decibels(heard / wanted)), 0.1) << what;
}

} // namespace

TEST(Stream, oneApplicationIsHeardAndAnotherIsNot)
{
    MixBed bed(noMix());
    const auto other = playOther(bed);
    StreamEars ears(bed, bed.player()->pid());
    ASSERT_TRUE(ears.start());
    ASSERT_TRUE(ears.becomesHeard(playerTone, 0.2));
    const auto heard = ears.tones({playerTone, otherTone});
    for (const auto &side : heard) {
        expectTone("picked", side[0], 0.2);
        expectTone("another", side[1], 0);
    }
}

TEST(Stream, aPulseClientIsHeardByItsOwnProcessNotByItsServers)
{
    MixBedOptions options = noMix();
    options.configuration.pulse = true;
    MixBed bed(options);
    const auto client = playPulseClient(bed.session(), {"tone:700:0.3", "tone:700:0.3"});
    StreamEars ears(bed, client->pid());
    ASSERT_TRUE(ears.start());
    ASSERT_TRUE(ears.becomesHeard(otherTone, 0.3));
    const auto heard = ears.tones({otherTone, playerTone});
    expectTone("picked", heard[0][0], 0.3);
    expectTone("another", heard[0][1], 0);
}

TEST(Stream, withoutAnApplicationAllButThisVeryProcessAreHeard)
{
    MixBed bed(noMix());
    const auto other = playOther(bed);
    const OwnPlayer own({"FL=tone:500:0.3", "FR=tone:500:0.3"});
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) {
        return graph.port("own-player:output_FL") != nullptr && graph.node("own-player")->state == "running";
    }));
    StreamEars ears(bed);
    ASSERT_TRUE(ears.start());
    ASSERT_TRUE(ears.becomesHeard(playerTone, 0.2));
    ASSERT_TRUE(ears.becomesHeard(otherTone, 0.3));
    const auto heard = ears.tones({playerTone, otherTone, ownTone});
    for (const auto &side : heard) {
        expectTone("player", side[0], 0.2);
        expectTone("other", side[1], 0.3);
        expectTone("ourselves", side[2], 0);
    }
}

TEST(Stream, anApplicationThatBeginsLaterIsHeardFromThenOn)
{
    MixBed bed({.device = false, .microphone = false, .application = false});
    StreamEars ears(bed);
    ASSERT_TRUE(ears.start());
    bed.waitFor([] { return false; }, 300ms);
    EXPECT_EQ(ears.frames(), 0U) << "nobody plays";
    const auto other = playOther(bed);
    EXPECT_TRUE(ears.becomesHeard(otherTone, 0.3));
}

TEST(Stream, leftAndRightStayApart)
{
    MixBed bed(noMix({.channels = {"FL=tone:700:0.3", "FR=tone:1499:0.2"}}));
    StreamEars ears(bed, bed.player()->pid());
    ASSERT_TRUE(ears.start());
    ASSERT_TRUE(ears.becomesHeard(otherTone, 0.3));
    const auto heard = ears.tones({otherTone, playerTone});
    expectTone("left", heard[0][0], 0.3);
    expectTone("left", heard[0][1], 0);
    expectTone("right", heard[1][0], 0);
    expectTone("right", heard[1][1], 0.2);
}

/// Frames a second that the application plays at; the server has made them the graph's before anybody hears them.
class StreamRates : public testing::TestWithParam<int>
{
};

TEST_P(StreamRates, anApplicationsOwnRateHasBecomeTheGraphs)
{
    MixBed bed(noMix({.rate = GetParam()}));
    StreamEars ears(bed, bed.player()->pid());
    ASSERT_TRUE(ears.start());
    ASSERT_TRUE(ears.becomesHeard(playerTone, 0.2));
    EXPECT_EQ(ears.formats().back(), AVAudioFormat::standardFormat(48000, 2)->streamDescription());
    expectTone("player", ears.tones({playerTone})[0][0], 0.2);
}

INSTANTIATE_TEST_SUITE_P(Applications, StreamRates, testing::Values(44100, 48000, 96000),
                         [](const auto &rate) { return std::to_string(rate.param); });

// A machine that wakes up late breaks the player's sound as well: listen again, while it does. What a fault of ours
// drops or doubles, it drops or doubles each time.
TEST(Stream, theSoundHasNoGap)
{
    MixBed bed(noMix());
    StreamEars ears(bed, bed.player()->pid());
    ASSERT_TRUE(ears.start());
    ASSERT_TRUE(ears.becomesHeard(playerTone, 0.2));
    double residue = 0;
    for (int attempt = 0; attempt < 8; ++attempt) {
        residue = residueBesideTones(ears.listen(48000)[0], 48000, {playerTone});
        std::printf("  residue %.1f dB\n", decibels(residue));
        if (decibels(residue) < -80)
            break;
    }
    EXPECT_LT(decibels(residue), -80);
}

TEST(Stream, theGraphChangesItsRateInTheMiddleAndTheToneGoesOn)
{
    MixBed bed(noMix());
    StreamEars ears(bed, bed.player()->pid());
    ASSERT_TRUE(ears.start());
    ASSERT_TRUE(ears.becomesHeard(playerTone, 0.2));
    for (const double rate : {44100.0, 96000.0, 48000.0}) {
        bed.session().set("clock.force-rate", std::to_string(static_cast<int>(rate)));
        ASSERT_TRUE(bed.waitFor([&] { return ears.formats().back().mSampleRate == rate; })) << rate;
        EXPECT_TRUE(ears.becomesHeard(playerTone, 0.2)) << rate;
        const auto heard = ears.tones({playerTone});
        std::printf("  graph at %.0f Hz: ", rate);
        expectTone("player", heard[0][0], 0.2);
    }
    EXPECT_EQ(ears.formats().size(), 4U);
    EXPECT_THAT(ears.errors(), IsEmpty());
}

TEST(Stream, theApplicationChangesItsChannelsInTheMiddleAndTheToneGoesOn)
{
    MixBed bed({.device = false, .microphone = false, .application = false});
    // A process that makes its streams anew, as players do for each piece: this one.
    StreamEars ears(bed, getpid());
    ASSERT_TRUE(ears.start());
    const std::vector<std::string> mono = {"--keep-channels", "MONO=tone:500:0.3"};
    const std::vector<std::string> stereo = {"--keep-channels", "FL=tone:500:0.3", "FR=tone:500:0.3"};
    for (const auto &[piece, channels] : {std::pair(mono, 1U), std::pair(stereo, 2U), std::pair(mono, 1U)}) {
        const OwnPlayer playing(piece);
        ASSERT_TRUE(ears.becomesHeard(ownTone, 0.3));
        const auto heard = ears.tones({ownTone});
        std::printf("  %u channels played, %u delivered\n", channels, ears.formats().back().mChannelsPerFrame);
        expectTone("left", heard[0][0], 0.3);
        expectTone("right", heard[1][0], 0.3);
        EXPECT_EQ(ears.formats().back().mChannelsPerFrame, channels);
    }
}

// The server gives the ports that come the ids of those that have gone. Who learns of both at once must not take the
// new ones for the old, nor their links for links that are there.
TEST(Stream, anApplicationThatIsReplacedWhileNobodyLooksIsLinkedAnew)
{
    MixBed bed({.device = false, .microphone = false, .application = false});
    StreamEars ears(bed, getpid());
    ASSERT_TRUE(ears.start());
    auto playing = std::make_unique<OwnPlayer>(std::vector<std::string>{"--keep-channels", "MONO=tone:500:0.3"});
    ASSERT_TRUE(ears.becomesHeard(ownTone, 0.3));

    const auto isLinkedToSpeakers = [](const SoundGraph &graph) {
        const GraphPort *from = graph.port("own-player:output_FR");
        const GraphPort *into = graph.port("speakers:playback_FR");
        return from != nullptr && into != nullptr && graph.link(from->id, into->id) != nullptr;
    };
    {
        const ControlThreadHold hold(bed);
        playing.reset();
        const std::vector<std::string> stereo = {"--keep-channels", "FL=tone:500:0.3", "FR=tone:500:0.3"};
        playing = std::make_unique<OwnPlayer>(stereo);
        ASSERT_TRUE(bed.session().waitForGraph(isLinkedToSpeakers));
    }
    ASSERT_TRUE(ears.becomesHeard(ownTone, 0.3));
    const auto heard = ears.tones({ownTone});
    expectTone("left", heard[0][0], 0.3);
    expectTone("right", heard[1][0], 0.3);
}

TEST(Stream, picturesAreAcceptedAndNeverCome)
{
    MixBed bed(noMix());
    StreamEars ears(bed, bed.player()->pid());
    ASSERT_TRUE(ears.start());
    ears.listen(24000);
    EXPECT_EQ(ears.pictures(), 0);
    EXPECT_LT(ears.stream().addStreamOutput({}, SCStreamOutputType::audio), 0) << "no output at all";
}

TEST(Stream, stopLeavesNoNodeAndNothingIsDeliveredAnyMore)
{
    MixBed bed(noMix());
    StreamEars ears(bed, bed.player()->pid());
    ASSERT_TRUE(ears.start());
    ears.listen(4800);
    ASSERT_TRUE(hasStreamNode(SoundGraph::read()));
    ASSERT_TRUE(ears.stop());
    const std::size_t frames = ears.frames();
    EXPECT_TRUE(bed.waitForGraph(hasNoNodes));
    bed.waitFor([] { return false; }, 300ms);
    EXPECT_EQ(ears.frames(), frames);
    EXPECT_THAT(ears.errors(), IsEmpty()) << "to be stopped is no error";
}

TEST(Stream, itCanBeStartedAgainAfterAStop)
{
    MixBed bed(noMix());
    StreamEars ears(bed, bed.player()->pid());
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(ears.start());
        EXPECT_TRUE(ears.becomesHeard(playerTone, 0.2));
        ASSERT_TRUE(ears.stop());
    }
}

TEST(Stream, toStartOrToStopTwiceIsAFailureWithoutConsequences)
{
    MixBed bed(noMix());
    StreamEars ears(bed, bed.player()->pid());
    EXPECT_FALSE(ears.stop());
    ASSERT_TRUE(ears.start());
    EXPECT_FALSE(ears.start());
    EXPECT_TRUE(ears.becomesHeard(playerTone, 0.2));
    EXPECT_TRUE(ears.stop());
    EXPECT_FALSE(ears.stop());
}

TEST(Stream, theDestructorOfALiveStreamLeavesNoNode)
{
    MixBed bed(noMix());
    {
        StreamEars ears(bed, bed.player()->pid());
        ASSERT_TRUE(ears.start());
        ears.listen(4800);
        ASSERT_TRUE(hasStreamNode(SoundGraph::read()));
    }
    EXPECT_TRUE(bed.waitForGraph(hasNoNodes));
}

TEST(Stream, whenTheServerIsKilledTheDelegateIsToldOnce)
{
    MixBed bed(noMix());
    StreamEars ears(bed, bed.player()->pid());
    ASSERT_TRUE(ears.start());
    ears.listen(4800);
    bed.session().kill(SoundServer::pipewire);
    ASSERT_TRUE(bed.waitFor([&] { return !ears.errors().empty(); }));
    bed.unplugAll();
    bed.session().stopSoundServers();
    const std::size_t frames = ears.frames();
    bed.session().startSoundServers();
    bed.plugAll();
    StreamEars later(bed); // the program is connected again, and so would the first stream be
    ASSERT_TRUE(bed.waitFor([&] { return later.start().has_value(); }));
    ASSERT_TRUE(later.becomesHeard(playerTone, 0.2));
    const std::vector<Error> errors = ears.errors();
    ASSERT_EQ(errors.size(), 1U);
    std::printf("  %s (%s %d)\n", errors[0].localizedDescription.c_str(), errors[0].domain.c_str(), errors[0].code);
    EXPECT_EQ(errors[0], (Error{"NSOSStatusErrorDomain", -ENOTCONN, "The sound server went away."}));
    EXPECT_EQ(ears.frames(), frames);
    EXPECT_FALSE(ears.stop()) << "it has ended already";
    EXPECT_EQ(ears.errors().size(), 1U);
}

TEST(Stream, withoutAServerAStartFailsAndNobodyWaits)
{
    MixBed bed(noMix());
    bed.unplugAll();
    bed.session().stopSoundServers();
    ASSERT_TRUE(bed.waitFor([&] {
        StreamEars ears(bed);
        const auto started = ears.start();
        return !started && started.error().code == -ENOTCONN;
    }));
}

TEST(Stream, aServerThatHangsMakesAStartFailAndKeepsNobodyWaiting)
{
    MixBed bed(noMix());
    StreamEars ears(bed, bed.player()->pid());
    bed.session().hangServer();
    std::atomic<bool> isAnswered = false;
    std::atomic<bool> isStarted = false;
    QElapsedTimer clock;
    clock.start();
    ears.stream().startCaptureWithCompletionHandler([&](const Result<void> &result) {
        isStarted = result.has_value();
        isAnswered = true;
    });
    EXPECT_FALSE(isAnswered) << "who asks goes on before it is clear that nobody answers";
    EXPECT_TRUE(bed.waitFor([&] { return isAnswered.load(); }));
    std::printf("  failed after %lld ms\n", static_cast<long long>(clock.elapsed()));
    EXPECT_FALSE(isStarted);
    EXPECT_FALSE(ears.stop()) << "there is nothing to stop";
    bed.session().resumeServer();
    EXPECT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return !hasStreamNode(graph); }));
}

} // namespace tolvenary::session
