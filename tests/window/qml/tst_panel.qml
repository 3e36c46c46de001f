import QtQuick
import QtTest
import Tolvenary

Item {
    id: root

    width: 520
    height: 541

    PanelCase {
        name: "Panel"

        property Component chips: Component {
            GlassButtonStyle {
                text: "Re-scan"
            }
        }

        property Component cards: Component {
            CardSection {
                icon: "mic.fill"
                title: "Source app"
            }
        }

        function test_cardTitlesAreUpperCased_data() {
            return [{tag: "Source app", title: "SOURCE APP"}, {tag: "ALREADY", title: "ALREADY"}];
        }

        function test_cardTitlesAreUpperCased(data) {
            const card = createTemporaryObject(cards, root, {title: data.tag});
            compare(item("headingText", card).text, data.title);
        }

        function test_aPressedChipIsBrighterAndShrinksAndSpringsBack() {
            const chip = createTemporaryObject(chips, root);
            verify(Qt.colorEqual(chip.background.fill[0], Theme.white(0.08)));
            mousePress(chip);
            verify(Qt.colorEqual(chip.background.fill[0], Theme.white(0.18)));
            tryVerify(() => Math.abs(chip.scale - 0.96) < 0.0005);
            mouseRelease(chip);
            verify(Qt.colorEqual(chip.background.fill[0], Theme.white(0.08)));
            tryCompare(chip, "scale", 1);
        }

        function test_tabGoesFromTopToBottomWithAVisibleFocus() {
            stage.plugIn(["BlackHole 2ch"]);
            item("appPicker").forceActiveFocus(Qt.TabFocusReason);
            const stops = [item("appPicker"), item("refreshApps"), item("slider", item("appGain")),
                item("slider", item("micGain")), item("devicePicker"), item("refreshDevices"), item("startButton")];
            for (const stop of stops) {
                verify(stop.activeFocus, stop.objectName);
                verify(stop.visualFocus, stop.objectName);
                keyClick(Qt.Key_Tab);
            }
            verify(stops[0].activeFocus);
            keyClick(Qt.Key_Tab, Qt.ShiftModifier);
            verify(stops[6].activeFocus);
        }

        function test_withoutADeviceTabStopsAtReScan() {
            item("slider", item("micGain")).forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Tab);
            verify(item("rescan").activeFocus);
        }

        function test_theBackgroundReachesToAllEdges() {
            const background = panel.children[0];
            compare(Qt.rect(background.x, background.y, background.width, background.height),
                    Qt.rect(0, 0, panel.width, panel.height));
        }

        function test_theStarsTwinkleFromTheStart() {
            verify(item("stars").twinkle);
        }

        function test_theNoteIsAlwaysThere() {
            stage.runApplications(["Firefox"]);
            stage.pick("Firefox");
            verify(item("note").visible);
            compare(item("note").text,
                    "Whole-system audio is captured. Picker is cosmetic — pick whatever you like.");
        }

        function test_refreshingAppsFillsThePicker() {
            stage.runUnseen("Firefox");
            compare(stage.coordinator.availableApps.length, 0);
            mouseClick(item("refreshApps"));
            tryVerify(() => stage.coordinator.availableApps.length === 1);
        }

        function test_aRightToLeftLocaleMirrorsTheLayout() {
            stage.plugIn(["BlackHole 2ch"]);
            panel.LayoutMirroring.enabled = true;
            panel.LayoutMirroring.childrenInherit = true;
            const right = name => panel.width - item(name).mapToItem(panel, item(name).width, 0).x;
            compare(right("startButton"), 22);
            verify(item("title").mirrored);
            compare(right("headingIcon"), 36);
            compare(item("bubble").mapToItem(panel, 0, 0).x, 22);
            compare(item("refreshApps").mapToItem(panel, 0, 0).x, 36);
            verify(item("slider", item("micGain")).mirrored);
        }
    }
}
