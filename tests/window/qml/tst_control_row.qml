import QtQuick
import QtTest
import Tolvenary

Item {
    width: 520
    height: 541

    PanelCase {
        name: "ControlRow"

        function makeReady() {
            stage.plugIn(["BlackHole 2ch"]);
            stage.runApplications(["Firefox"]);
            stage.pick("Firefox");
        }

        function test_returnStartsAndStops() {
            makeReady();
            keyClick(Qt.Key_Return);
            tryVerify(() => stage.coordinator.isRunning);
            compare(item("startButton").text, "Stop");
            keyClick(Qt.Key_Enter);
            tryVerify(() => !stage.coordinator.isRunning);
            compare(stage.coordinator.status, "Stopped");
            compare(item("startButton").text, "Start");
        }

        function test_returnStartsWhicheverControlHasTheFocus() {
            makeReady();
            for (const name of ["appPicker", "refreshApps", "devicePicker"]) {
                item(name).forceActiveFocus(Qt.TabFocusReason);
                keyClick(Qt.Key_Return);
                tryVerify(() => stage.coordinator.isRunning);
                keyClick(Qt.Key_Return);
                tryVerify(() => !stage.coordinator.isRunning);
            }
        }

        function test_returnDoesNothingWhileTheButtonIsDisabled() {
            stage.runApplications(["Firefox"]);
            stage.pick("Firefox");
            keyClick(Qt.Key_Return);
            wait(0);
            compare(stage.coordinator.status, "Idle");
        }

        function test_spacePressesTheFocusedButton() {
            makeReady();
            item("startButton").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Space);
            tryVerify(() => stage.coordinator.isRunning);
        }

        function test_aClickWithoutAnApplicationSaysSo() {
            stage.plugIn(["BlackHole 2ch"]);
            mouseClick(item("startButton"));
            tryCompare(stage.coordinator, "status", "Pick an app first.");
            compare(item("message").text, "Pick an app first.");
        }

        function test_theButtonsLookFollowsTheMixAndNotThePress() {
            makeReady();
            const background = item("startButton").background;
            const idle = [Theme.cyan, Theme.blue, Theme.purple];
            const active = [Theme.pink, Theme.purple, Theme.blue];
            const looks = colors => background.fill.every((color, i) => Qt.colorEqual(color, colors[i]));
            verify(looks(idle));
            verify(Qt.colorEqual(background.shadowColor, Theme.faded(Theme.cyan, 0.45)));
            mousePress(item("startButton"));
            verify(looks(idle));
            mouseRelease(item("startButton"));
            tryVerify(() => stage.coordinator.isRunning);
            verify(looks(active));
            verify(Qt.colorEqual(background.shadowColor, Theme.faded(Theme.pink, 0.45)));
            compare(item("symbol", item("startButton")).name, "stop.fill");
        }

        function test_aPressedButtonShrinksAndSpringsBack() {
            makeReady();
            const button = item("startButton");
            compare(button.scale, 1);
            mousePress(button);
            tryVerify(() => Math.abs(button.scale - 0.96) < 0.0005);
            mouseRelease(button);
            tryCompare(button, "scale", 1);
        }

        function test_aLongStatusIsCutAtTwoLines() {
            stage.coordinator.status = "word ".repeat(200);
            compare(item("message").lineCount, 2);
            verify(item("message").truncated);
            compare(item("bubble").height, 38);
        }

        function test_aShortStatusLeavesTheBubbleOneLineHighAndFullWidth() {
            stage.coordinator.status = "Idle";
            compare(item("bubble").height, 25);
            compare(item("bubble").width, 326);
        }

        function test_anEmptyStatusLeavesTheDot() {
            stage.coordinator.status = "";
            compare(item("message").text, "");
            verify(item("dot", item("bubble")).visible);
            compare(item("bubble").height, 25);
        }

        function test_theDotGlowsOnlyWhileTheMixRuns() {
            makeReady();
            const dot = item("dot", item("bubble"));
            verify(Qt.colorEqual(dot.fill[0], Theme.white(0.4)));
            compare(dot.shadowColor.a, 0);
            stage.start();
            verify(Qt.colorEqual(dot.fill[0], Theme.green));
            verify(Qt.colorEqual(dot.shadowColor, Theme.green));
        }

        function test_marksInAStatusAreShownAsTheyStand() {
            stage.coordinator.status = "App list error: **x** <b>y</b>";
            compare(item("message").text, "App list error: **x** <b>y</b>");
            verifyShownVerbatim(item("message"));
        }
    }
}
