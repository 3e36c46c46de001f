pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// Shows which control the keyboard acts on. Lies around its parent.
Rectangle {
    id: ring

    required property bool shown
    property real cornerRadius: 8

    anchors.fill: parent
    anchors.margins: -3
    visible: shown
    color: "transparent"
    radius: cornerRadius + 3
    border.width: 2
    border.color: Theme.faded(Theme.cyan, 0.9)
}
