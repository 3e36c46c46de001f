#include "tests/session/mix_bed.h"
#include "tests/session/support/steady_gaps.h"

#include <gtest/gtest.h>

namespace tolvenary::session
{

/// Both microphones have the same steady sound, so that whatever is heard of the change is a jump: a break on the way
/// from one to the other as well as both at once.
TEST(MicrophoneChange, isNotHeard)
{
    MixBedOptions options{.voice = {"MONO=steady:0.25"}};
    options.player.channels = {"FL=silence", "FR=silence"};
    MixBed bed(options);
    const auto other = makeMicrophone(bed.session(), "MONO", "other-microphone");
    const auto otherVoice = speakInto(bed.session(), "other-microphone", {"MONO=steady:0.25"});
    bed.session().chooseDefault("default.configured.audio.source", "microphone");
    bed.start();
    ASSERT_TRUE(bed.waitFor([&] { return bed.mix().micFrames() > 0; })) << bed.status();
    Recorder recorder(bed.session(), {"microphone:capture_MONO", "other-microphone:capture_MONO", bed.monitor("FL")});
    bed.record(recorder, 48000);
    SteadyGaps gaps;
    constexpr int changes = 6;
    for (int change = 1; change <= changes; ++change) {
        const std::string next = change % 2 == 1 ? "other-microphone" : "microphone";
        recorder.begin(48000);
        bed.session().chooseDefault("default.configured.audio.source", next);
        gaps += findSteadyGaps(recorder.finish(), 2, 0.1F);
        const auto isFollowed = [&](const SoundGraph &graph) {
            const GraphNode *ours = graph.node("com.tolvenary.microphone");
            std::vector<std::uint32_t> sources;
            for (const GraphLink &link : graph.links) {
                if (ours != nullptr && link.inputNode == ours->id)
                    sources.push_back(link.outputNode);
            }
            return sources == std::vector<std::uint32_t>{graph.node(next)->id};
        };
        EXPECT_TRUE(bed.waitForGraph(isFollowed)) << change;
    }
    std::printf("  %d changes: %zu gaps of ours, %zu of a source, %zu of xruns (%zu)\n", changes, gaps.ours,
                gaps.sources, gaps.xruns, gaps.jumps);
    for (const std::string &account : gaps.accounts)
        std::printf("  %s\n", account.c_str());
    EXPECT_EQ(gaps.ours, 0U);
}

} // namespace tolvenary::session
