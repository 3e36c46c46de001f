// By how many frames a click is later in the device than at the microphone's or the application's port, beside two
// pw-loopback that do the same mix. Each click is a round; both are started anew in turns, since in which order the
// nodes run is settled when they are linked. The median counts: a late wake-up of the machine delays either until it
// has been made up for.

#include "bench/loopback_pair.h"
#include "bench/report.h"
#include "tests/session/mix_bed.h"
#include "tests/session/support/clicks.h"

#include <algorithm>
#include <stdexcept>

namespace
{

using namespace tolvenary;
using namespace tolvenary::session;
using bench::LoopbackPair;
using bench::progress;

constexpr std::array<int, 4> quanta{32, 64, 256, 1024};
constexpr int turns = 3;
constexpr std::size_t clicksATurn = 5;
constexpr const char *microphonePort = "microphone:capture_MONO";

// The application plays to the right only and louder, so that each source's clicks can be told apart in the mix.
constexpr std::size_t microphone = 0;
constexpr std::size_t application = 1;
constexpr std::size_t deviceLeft = 2;
constexpr std::size_t deviceRight = 3;
constexpr float quiet = 0.1F;
constexpr float loud = 0.35F;

struct Delays {
    std::vector<double> microphone;
    std::vector<double> application;

    bool areEnough() const { return microphone.size() >= clicksATurn && application.size() >= clicksATurn; }

    void append(const Delays &more)
    {
        microphone.insert(microphone.end(), more.microphone.begin(), more.microphone.end());
        application.insert(application.end(), more.application.begin(), more.application.end());
    }
};

void append(std::vector<double> &delays, const Samples &played, const Samples &heard, float threshold)
{
    for (const long delay : clickDelays(findClicks(played, threshold), findClicks(heard, threshold), 4000))
        if (delays.size() < clicksATurn)
            delays.push_back(static_cast<double>(delay));
}

Delays listen(MixBed &bed, Recorder &recorder)
{
    Delays delays;
    for (int attempt = 0; attempt < 10 && !delays.areEnough(); ++attempt) {
        const Recording recording = bed.record(recorder, 72000);
        for (const Stretch stretch : recording.unbroken()) {
            append(delays.microphone, recording.part(microphone, stretch), recording.part(deviceLeft, stretch), quiet);
            append(delays.application, recording.part(application, stretch), recording.part(deviceRight, stretch),
                   loud);
        }
    }
    if (!delays.areEnough())
        throw std::runtime_error("too few clicks are heard in the device");
    return delays;
}

bool hears(const Recording &recording, std::size_t track, float threshold)
{
    return !findClicks(recording.tracks[track], threshold).empty();
}

Delays ofOurs(MixBed &bed, Recorder &recorder)
{
    bed.run();
    bed.record(recorder, 24000);
    Delays delays = listen(bed, recorder);
    bed.stop();
    return delays;
}

Delays ofLoopbacks(MixBed &bed, Recorder &recorder)
{
    const LoopbackPair loopbacks(bed.session());
    const auto sounds = [&] {
        const Recording recording = bed.record(recorder, 12000);
        return hears(recording, deviceLeft, quiet) && hears(recording, deviceRight, loud);
    };
    if (!bed.waitFor(sounds))
        throw std::runtime_error("the loopbacks are not heard");
    bed.record(recorder, 24000);
    return listen(bed, recorder);
}

void report(const std::string &source, int quantum, const std::vector<double> &ours, const std::vector<double> &theirs)
{
    bench::report({.part = "Delay",
                   .work = source + " to device, " + std::to_string(quantum) + " frames a cycle",
                   .beside = "two pw-loopback",
                   .unit = "frames",
                   .ours = ours,
                   .theirs = theirs,
                   .mostOfOurs = 0});
}

} // namespace

int main()
{
    MixBedOptions options;
    options.configuration.shippedDevice = true;
    options.device = false;
    options.voice = {"MONO=clicks:4801:0.25"};
    options.player.channels = {"FL=silence", "FR=clicks:6007:0.5"};
    try {
        MixBed bed(options);
        Recorder recorder(bed.session(),
                          {microphonePort, applicationPort("player", "FR"), bed.monitor("FL"), bed.monitor("FR")});
        for (const int quantum : quanta) {
            progress("delay, " + std::to_string(quantum) + " frames a cycle");
            bed.session().set("clock.force-quantum", std::to_string(quantum));
            Delays ours;
            Delays theirs;
            for (int turn = 0; turn < turns; ++turn) {
                ours.append(ofOurs(bed, recorder));
                theirs.append(ofLoopbacks(bed, recorder));
            }
            report("microphone", quantum, ours.microphone, theirs.microphone);
            report("application", quantum, ours.application, theirs.application);
        }
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
