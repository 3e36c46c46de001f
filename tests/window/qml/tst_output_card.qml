import QtQuick
import QtTest
import Tolvenary

Item {
    width: 520
    height: 541

    PanelCase {
        name: "OutputCard"

        function test_withoutADeviceItSaysHowToComeByOneAndStartIsDisabled() {
            const row = item("missingRow");
            verify(row.visible);
            verify(!item("foundRow").visible);
            verify(!item("hint").visible);
            compare(item("missingText").text, "BlackHole not detected. Install via brew install blackhole-2ch.");
            compare(item("rescan").text, "Re-scan");
            verify(Qt.colorEqual(item("dot", row).fill[0], Theme.orange));
            verify(!item("startButton").enabled);
        }

        function test_reScanFindsADeviceThatWasAddedMeanwhile() {
            stage.plugInUnseen("BlackHole 2ch");
            mouseClick(item("rescan"));
            verify(item("foundRow").visible);
            verify(!item("missingRow").visible);
            compare(item("text", item("devicePicker")).text, "BlackHole 2ch");
            verify(item("startButton").enabled);
        }

        function test_theRefreshButtonLooksAgainToo() {
            stage.plugIn(["BlackHole 2ch"]);
            stage.plugInUnseen("BlackHole 16ch");
            mouseClick(item("refreshDevices"));
            compare(stage.coordinator.blackHoleDevices.length, 2);
        }

        function test_withDevicesButNoSelectionTheHintNamesBlackHoleAndStartIsDisabled() {
            stage.plugIn(["BlackHole 2ch"]);
            stage.deselectDevice();
            compare(item("hint").markdown, "In Discord, set Input to **%1**.");
            compare(item("hint").text, "In Discord, set Input to BlackHole.");
            compare(item("text", item("devicePicker")).text, "");
            verify(!item("startButton").enabled);
        }

        function test_theHintNamesTheSelectedDevice() {
            stage.plugIn(["BlackHole 2ch"]);
            compare(item("hint").text, "In Discord, set Input to BlackHole 2ch.");
        }

        function test_marksInADeviceNameAreShownAsTheyStand() {
            stage.plugIn(["**BlackHole** <b>x</b> `y`"]);
            compare(item("hint").text, "In Discord, set Input to **BlackHole** <b>x</b> `y`.");
            compare(item("text", item("devicePicker")).text, "**BlackHole** <b>x</b> `y`");
        }

        function test_choosingInThePickerSelectsThatDevice() {
            stage.plugIn(["BlackHole 2ch", "BlackHole 16ch"]);
            mouseClick(item("devicePicker"));
            keyClick(Qt.Key_End);
            keyClick(Qt.Key_Return);
            compare(stage.coordinator.selectedBlackHole.name, "BlackHole 16ch");
            compare(item("hint").text, "In Discord, set Input to BlackHole 16ch.");
        }

        function test_aRunningMixWithoutASelectedDeviceCannotBeStoppedFromTheButton() {
            stage.plugIn(["BlackHole 2ch"]);
            stage.runApplications(["Firefox"]);
            stage.pick("Firefox");
            stage.start();
            stage.deselectDevice();
            verify(!item("startButton").enabled);
            keyClick(Qt.Key_Return);
            wait(0);
            verify(stage.coordinator.isRunning);
        }
    }
}
