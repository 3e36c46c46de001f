import QtQuick
import QtTest
import Tolvenary
import TolvenaryTest

// A test case with the whole panel on a stage of its own, anew for every test function. A warning fails the test.
TestCase {
    id: testCase

    property Stage stage
    property ContentView panel
    property int panelWidth: 520
    property int panelHeight: 541

    property Component stages: Component {
        Stage {}
    }

    property Component panels: Component {
        ContentView {
            width: testCase.panelWidth
            height: testCase.panelHeight
        }
    }

    function item(name: string, root: var): Item {
        const found = findChild(root ?? panel, name);
        verify(found, "no " + name);
        return found;
    }

    // Marks that were taken for marks would be missing in the width.
    function verifyShownVerbatim(label: Item) {
        const metrics = createTemporaryQmlObject("import QtQuick; FontMetrics {}", testCase);
        metrics.font = label.face.font;
        fuzzyCompare(label.contentWidth, metrics.advanceWidth(label.text), 1);
    }

    function init() {
        failOnWarning(/.?/);
        stage = stages.createObject(testCase.parent);
        panel = panels.createObject(testCase.parent, {coordinator: stage.coordinator, actions: stage.actions});
        waitForRendering(panel);
    }

    function cleanup() {
        panel.destroy();
        stage.destroy();
        wait(0);
    }

    when: windowShown
    width: panelWidth
    height: panelHeight
}
