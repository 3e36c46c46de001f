#include "tests/session/mix_bed.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <gtest/gtest.h>

namespace tolvenary::session
{

namespace
{

using Processes = std::vector<std::unique_ptr<ChildProcess>>;

constexpr float spoken = 0.5F;
constexpr float played = 0.25F;

/// A way in which what the device hears could come round to it again.
struct Loop {
    std::string name;
    DeviceKind device;
    Processes (*begin)(MixBed &);
    float copies = 1; ///< of the mix in the device
    bool isAloud = true;
};

/// The node's inputs are fed, as its maker wanted them.
bool isFed(const SoundGraph &graph, const std::string &name)
{
    const GraphNode *node = graph.node(name);
    return node != nullptr && std::any_of(graph.links.begin(), graph.links.end(), [&](const GraphLink &link) {
               return link.inputNode == node->id && link.state == "active";
           });
}

Processes startLoopback(MixBed &bed, const std::string &from)
{
    Processes all;
    all.push_back(bed.session().start({"pw-loopback", "--capture-props={ node.name=loop-in " + from + " }",
                                       "--playback-props={ node.name=loop-out target.object=speakers }"}));
    return all;
}

Processes playTheSourceAloud(MixBed &bed)
{
    return startLoopback(bed, "target.object=blackhole_2ch.source");
}

Processes playTheMonitorAloud(MixBed &bed)
{
    return startLoopback(bed, "stream.capture.sink=true target.object=blackhole_2ch");
}

Processes playItThroughThePulseServer(MixBed &bed)
{
    runToEnd({"pactl", "load-module", "module-loopback", "source=blackhole_2ch.source", "sink=speakers",
              "source_dont_move=true", "sink_input_properties=node.name=loop-out",
              "source_output_properties=node.name=loop-in"});
    bed.waitForGraph([](const SoundGraph &graph) { return isFed(graph, "loop-in"); });
    return {};
}

/// A chain of effects as users configure them, here one that changes nothing.
Processes startEffects(MixBed &bed, const std::string &capture, const std::string &playback)
{
    const std::string file = bed.session().environment().root() / "effects.conf";
    std::ofstream(file) << "context.spa-libs = { support.* = support/libspa-support\n"
                           "  audio.convert.* = audioconvert/libspa-audioconvert }\n"
                           "context.modules = [\n"
                           "  { name = libpipewire-module-rt flags = [ ifexists nofail ] }\n"
                           "  { name = libpipewire-module-protocol-native }\n"
                           "  { name = libpipewire-module-client-node }\n"
                           "  { name = libpipewire-module-adapter }\n"
                           "  { name = libpipewire-module-filter-chain args = {\n"
                           "    filter.graph = { nodes = [ { type = builtin name = copy label = copy } ] }\n"
                           "    audio.channels = 2 audio.position = [ FL FR ]\n"
                           "    capture.props = { node.name = loop-in "
                        << capture << " }\n    playback.props = { node.name = loop-out " << playback
                        << " }\n  } }\n]\n";
    Processes all;
    all.push_back(bed.session().start({"pipewire", "-c", file}));
    return all;
}

Processes playItThroughEffects(MixBed &bed)
{
    return startEffects(bed, "target.object=blackhole_2ch.source", "target.object=speakers");
}

/// Two loopbacks in a row: what the first plays goes into a sink of its own, and the second plays that.
Processes playItOverAnotherSink(MixBed &bed)
{
    Processes all;
    all.push_back(bed.session().start({"pw-loopback",
                                       "--capture-props={ node.name=second-in media.class=Audio/Sink "
                                       "priority.session=1 }",
                                       "--playback-props={ node.name=second-out target.object=speakers }"}));
    bed.waitForGraph([](const SoundGraph &graph) { return graph.port("second-in:playback_FR") != nullptr; });
    all.push_back(
        bed.session().start({"pw-loopback", "--capture-props={ node.name=loop-in target.object=blackhole_2ch.source }",
                             "--playback-props={ node.name=loop-out target.object=second-in }"}));
    return all;
}

Processes startASecondProgram(MixBed &bed)
{
    Processes all;
    all.push_back(bed.session().start({TOLVENARY_MIX_RUNNER, std::to_string(bed.player()->pid())}));
    return all;
}

MixBedOptions optionsFor(DeviceKind device)
{
    MixBedOptions options{.deviceKind = device, .voice = {"MONO=clicks:9601:0.5"}};
    options.player.channels = {"FL=clicks:12007:0.25", "FR=silence"};
    options.configuration.pulse = device == DeviceKind::pair;
    return options;
}

/// Sources, device and speakers, sample by sample.
class Ears
{
  public:
    explicit Ears(MixBed &bed)
        : m_bed(bed),
          m_recorder(bed.session(), {"microphone:capture_MONO", applicationPort("player", "FL"), bed.monitor("FL"),
                                     "speakers:monitor_FL"})
    {
        m_bed.record(m_recorder, 9600);
    }

    /// Listens from before something begins until it must long have been heard.
    template <typename Begin> auto listenWhile(Begin begin)
    {
        m_recorder.begin(60000);
        auto begun = begin();
        finish();
        return begun;
    }
    void listen()
    {
        m_recorder.begin(30000);
        finish();
    }

    std::size_t jumps() const { return m_recording.jumps(); }

    /// A loop that is closed may well keep the graph from running at all; what was hardly heard proves nothing.
    bool heardEnough() const { return m_recording.longestUnbroken().length() > 15000; }

    /// What the device hears besides its sources, as a share of what was spoken: the gain around any loop there is.
    float loopGain(float copies) const
    {
        float most = 0;
        const Stretch heard = m_recording.longestUnbroken();
        for (std::size_t i = heard.begin; i < heard.end; ++i) {
            const float wanted = copies * (m_recording.tracks[0][i] + m_recording.tracks[1][i]);
            most = std::max(most, std::abs(m_recording.tracks[2][i] - wanted));
        }
        return most / spoken;
    }

    /// The microphone is nowhere else played aloud.
    bool isLoopClosed() const
    {
        return std::ranges::any_of(m_recording.tracks[3],
                                   [](float sample) { return std::abs(sample) > 1.2F * played; });
    }

  private:
    void finish()
    {
        m_recording = m_recorder.finish([this] { m_bed.waitFor([] { return true; }); });
    }

    MixBed &m_bed;
    Recorder m_recorder;
    Recording m_recording;
};

/// A late wake-up of the machine leaves a cycle's worth behind, which the players skip a moment later: where the clock
/// has jumped it is listened to again.
float gainAround(Ears &ears, float copies)
{
    for (int attempt = 0; attempt < 8; ++attempt) {
        ears.listen();
        if (ears.heardEnough() && (ears.loopGain(copies) == 0 || ears.jumps() == 0))
            return ears.loopGain(copies);
    }
    ADD_FAILURE() << "the graph hardly runs";
    return ears.loopGain(copies);
}

} // namespace

class Loops : public testing::TestWithParam<Loop>
{
};

TEST_P(Loops, haveNoGain)
{
    const Loop &loop = GetParam();
    MixBed bed(optionsFor(loop.device));
    bed.run();
    Ears ears(bed);
    const Processes all = ears.listenWhile([&] { return loop.begin(bed); });
    const float whileItBegan = ears.loopGain(1);
    const std::size_t jumps = ears.jumps();
    ASSERT_TRUE(bed.waitFor([&] {
        ears.listen();
        return loop.isAloud ? ears.isLoopClosed() : ears.heardEnough() && ears.loopGain(loop.copies) == 0;
    })) << "the loop is not closed, which would be a poor proof";
    const float gain = gainAround(ears, loop.copies);
    std::printf("  gain %g", static_cast<double>(gain));
    EXPECT_EQ(gain, 0);
    if (loop.copies == 1) {
        std::printf(", while it began %g (%zu jumps of the clock)", static_cast<double>(whileItBegan), jumps);
        EXPECT_TRUE(whileItBegan == 0 || jumps > 0);
    }
    std::printf("\n");
}

INSTANTIATE_TEST_SUITE_P(Ways, Loops,
                         testing::Values(Loop{"loopbackOfTheMonitor", DeviceKind::nullSink, playTheMonitorAloud},
                                         Loop{"loopbackOfTheSource", DeviceKind::pair, playTheSourceAloud},
                                         Loop{"pulseServersLoopback", DeviceKind::pair, playItThroughThePulseServer},
                                         Loop{"effects", DeviceKind::pair, playItThroughEffects},
                                         Loop{"loopbackIntoAnotherSink", DeviceKind::pair, playItOverAnotherSink},
                                         Loop{"secondProgram", DeviceKind::pair, startASecondProgram, 2, false}),
                         [](const auto &info) { return info.param.name; });

/// A loop closed in earnest would show the same, but may keep the whole graph from running.
TEST(Loop, wouldBeHeardByTheseTestsAsTheVoiceThatComesBackIsWhenItIsPlayedAloud)
{
    MixBed bed(optionsFor(DeviceKind::pair));
    bed.run();
    const Processes all = startLoopback(bed, "target.object=microphone");
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return isFed(graph, "loop-in"); }));
    Ears ears(bed);
    EXPECT_TRUE(bed.waitFor([&] {
        ears.listen();
        return ears.loopGain(1) > 0.9F;
    })) << ears.loopGain(1);
}

TEST(Effects, thatApplicationsPlayThroughAreHeardOnce)
{
    MixBed bed(optionsFor(DeviceKind::pair));
    const Processes all = startEffects(bed, "media.class=Audio/Sink", "target.object=speakers");
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return graph.port("loop-in:playback_FR") != nullptr; }));
    bed.session().chooseDefault("default.configured.audio.sink", "loop-in");
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) {
        const GraphNode *effects = graph.node("loop-in");
        const GraphNode *player = graph.node("player");
        return std::ranges::any_of(graph.links, [&](const GraphLink &link) {
            return link.inputNode == effects->id && link.outputNode == player->id;
        });
    }));
    bed.run();
    Ears ears(bed);
    EXPECT_EQ(gainAround(ears, 1), 0);
}

TEST(Effects, thatMakeAMicrophoneOfTheDeviceAreNone)
{
    MixBed bed(optionsFor(DeviceKind::pair));
    const Processes all =
        startEffects(bed, "target.object=blackhole_2ch.source", "media.class=Audio/Source priority.session=1");
    ASSERT_TRUE(bed.waitForGraph([](const SoundGraph &graph) { return isFed(graph, "loop-in"); }));
    bed.run();
    bed.session().chooseDefault("default.configured.audio.source", "loop-out");
    ASSERT_TRUE(bed.waitForGraph(
        [](const SoundGraph &graph) { return graph.defaultNode("default.audio.source") == "loop-out"; }));
    Recorder recorder(bed.session(), {applicationPort("player", "FL"), bed.monitor("FL")});
    Recording heard;
    const auto isThePlayerAlone = [&] {
        heard = bed.record(recorder, 48000);
        const Stretch whole = heard.longestUnbroken();
        return heard.part(0, whole) == heard.part(1, whole);
    };
    EXPECT_TRUE(bed.waitFor(isThePlayerAlone)) << "a mix that hears itself would grow";
    const auto &player = heard.tracks[0];
    EXPECT_TRUE(std::ranges::any_of(player, [](float sample) { return sample == played; }));
}

} // namespace tolvenary::session
