import QtQuick
import QtTest
import Tolvenary

Item {
    width: 520
    height: 541

    PanelCase {
        name: "Gains"

        function near(actual: real, expected: real) {
            fuzzyCompare(actual, expected, 1e-6);
        }

        function test_aGainIsShownWithTwoDecimalsAndTheSign_data() {
            return [
                {tag: "zero", gain: 0, text: "0.00×"},
                {tag: "a third", gain: 0.35, text: "0.35×"},
                {tag: "one", gain: 1, text: "1.00×"},
                {tag: "an eighth", gain: 0.125, text: "0.12×"},
                {tag: "three eighths", gain: 0.375, text: "0.38×"},
                {tag: "thirteen eighths", gain: 1.625, text: "1.62×"},
                {tag: "two", gain: 2, text: "2.00×"},
                {tag: "out of range", gain: 2.5, text: "2.50×"},
                {tag: "below zero by an eighth", gain: -0.125, text: "-0.12×"}
            ];
        }

        function test_aGainIsShownWithTwoDecimalsAndTheSign(data) {
            stage.coordinator.micGain = data.gain;
            compare(item("readOut", item("micGain")).text, data.text);
            compare(item("readOut", item("appGain")).text, "1.00×");
        }

        function test_aValueFromElsewhereMovesTheThumb() {
            stage.coordinator.appGain = 0.5;
            near(item("slider", item("appGain")).position, 0.25);
        }

        function test_aValueOutOfRangeFromElsewhereIsNotWrittenBack() {
            stage.coordinator.appGain = 2.5;
            compare(stage.coordinator.appGain, 2.5);
            compare(item("slider", item("appGain")).position, 1);
            stage.coordinator.appGain = -1;
            compare(stage.coordinator.appGain, -1);
            compare(item("readOut", item("appGain")).text, "-1.00×");
        }

        function test_draggingReachesBothEndsAndNoFurther() {
            const slider = item("slider", item("micGain"));
            mousePress(slider, slider.width / 2, 10);
            mouseMove(slider, slider.width + 300, 10);
            compare(stage.coordinator.micGain, 2);
            mouseMove(slider, -300, 10);
            compare(stage.coordinator.micGain, 0);
            mouseRelease(slider, -300, 10);
            compare(stage.coordinator.appGain, 1);
        }

        function test_everyMoveOfADragIsWrittenAtOnce() {
            const slider = item("slider", item("micGain"));
            mousePress(slider, slider.width / 2, 10);
            for (const x of [180, 200, 220]) {
                mouseMove(slider, x, 10);
                near(stage.coordinator.micGain, Math.fround(2 * (x - 9) / (slider.width - 18)));
                compare(item("readOut", item("micGain")).text, stage.coordinator.micGain.toFixed(2) + "×");
            }
            mouseRelease(slider, 220, 10);
        }

        function test_afterADragTheThumbFollowsTheGainAgain() {
            const slider = item("slider", item("micGain"));
            mouseClick(slider, 200, 10);
            stage.coordinator.micGain = 0.5;
            near(slider.position, 0.25);
        }

        function test_keys_data() {
            return [
                {tag: "right", key: Qt.Key_Right, gain: 1.05},
                {tag: "left", key: Qt.Key_Left, gain: 0.95},
                {tag: "up", key: Qt.Key_Up, gain: 1.05},
                {tag: "down", key: Qt.Key_Down, gain: 0.95},
                {tag: "page up", key: Qt.Key_PageUp, gain: 1.25},
                {tag: "page down", key: Qt.Key_PageDown, gain: 0.75},
                {tag: "home", key: Qt.Key_Home, gain: 0},
                {tag: "end", key: Qt.Key_End, gain: 2}
            ];
        }

        function test_keys(data) {
            item("slider", item("micGain")).forceActiveFocus(Qt.TabFocusReason);
            keyClick(data.key);
            near(stage.coordinator.micGain, data.gain);
        }

        function test_keysStopAtTheEnds() {
            item("slider", item("micGain")).forceActiveFocus(Qt.TabFocusReason);
            stage.coordinator.micGain = 1.98;
            keyClick(Qt.Key_Right);
            compare(stage.coordinator.micGain, 2);
            stage.coordinator.micGain = 0.1;
            keyClick(Qt.Key_PageDown);
            compare(stage.coordinator.micGain, 0);
        }

        function test_everyDigitHasTheSameRoom() {
            const signs = () => Array.from(item("readOut", item("micGain")).children[0].children)
                .filter(child => child.sign !== undefined);
            const places = () => signs().map(sign => sign.x + " " + sign.width);
            stage.coordinator.micGain = 0;
            const expected = places();
            compare(expected.length, 5);
            for (let digit = 1; digit <= 9; ++digit) {
                stage.coordinator.micGain = digit * 1.11;
                compare(places(), expected);
                verify(signs().every(sign => sign.contentWidth <= sign.width + 0.01));
            }
        }

        function test_assistiveToolsReadTheRangeAndSetTheValue() {
            const slider = item("slider", item("appGain"));
            compare(slider.minimumValue, 0);
            compare(slider.maximumValue, 2);
            compare(slider.Accessible.name, "App gain");
            slider.Accessible.increaseAction();
            near(stage.coordinator.appGain, 1.05);
            slider.Accessible.decreaseAction();
            slider.Accessible.decreaseAction();
            near(stage.coordinator.appGain, 0.95);
        }
    }
}
