pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// One or two lines that tell what is happening, with a dot that tells whether the mix runs.
Item {
    id: bubble

    required property string text
    required property bool running

    implicitHeight: message.height + 12

    GlassShape {
        anchors.fill: parent
        radius: Theme.bubbleRadius
        fill: [Theme.white(0.05)]
        outline: [Theme.white(0.1)]
    }

    GlassShape {
        id: dot

        objectName: "dot"
        anchors.left: parent.left
        anchors.leftMargin: 10
        y: (parent.height - height) / 2
        width: 7
        height: 7
        radius: 3.5
        fill: [bubble.running ? Theme.green : Theme.white(0.4)]
        shadowColor: bubble.running ? Theme.green : "transparent"
        shadowRadius: 4
    }

    PanelText {
        id: message

        objectName: "message"
        anchors.left: dot.right
        anchors.right: parent.right
        anchors.leftMargin: 8
        anchors.rightMargin: 10
        y: (parent.height - height) / 2
        face: Typography.caption
        text: bubble.text
        color: Theme.white(0.8)
        lines: 2
        Accessible.role: Accessible.Notification
    }

    StatusAnnouncer {
        status: bubble.text
        speaker: message
    }
}
