#include "tests/session/tools/demo_measures.h"
#include "tests/session/tools/demo_stage.h"

#include <QGuiApplication>
#include <cstdio>
#include <exception>
#include <filesystem>

using namespace tolvenary::session;

/// Shows the program at work where there is no desktop: `session_demo PROGRAM DIRECTORY [INSTALLER]` sets up a stage,
/// operates the real window, and leaves mix.wav and panel.png in the directory. The installer is what makes the device;
/// the source's own where none is named. Succeeds only if what was heard is what was played.
int main(int argc, char **argv)
{
    if (argc != 3 && argc != 4) {
        std::fprintf(stderr, "usage: %s PROGRAM DIRECTORY [INSTALLER]\n", argv[0]);
        return 2;
    }
    const std::string program = argv[1];
    const std::filesystem::path directory = argv[2];
    const std::string installer = argc == 4 ? argv[3] : "";
    std::filesystem::create_directories(directory);
    try {
        DemoStage stage(argc, argv, program, installer);
        stage.pressStart(1.5F, 0.5F);
        const Recording recording = stage.record(6);
        stage.takePicture(directory / "panel.png");
        const DemoMeasures measures = measure(recording, stage.gains(), stage.statusLine());
        stage.pressStop();
        saveMix(recording, directory / "mix.wav");
        return report(measures) ? 0 : 1;
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
