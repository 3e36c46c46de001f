pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// What a closed picker shows: the chosen row's text, and the chevrons that promise more.
Item {
    id: face

    required property string text

    implicitHeight: label.implicitHeight
    Accessible.ignored: true

    PanelText {
        id: label

        objectName: "text"
        anchors.left: parent.left
        anchors.right: chevrons.left
        anchors.leftMargin: 9
        anchors.rightMargin: 6
        y: (parent.height - height) / 2
        face: Typography.body
        text: face.text
        color: Theme.white(0.9)
        Accessible.ignored: true
    }

    GlassShape {
        id: chevrons

        objectName: "chevrons"
        anchors.right: parent.right
        anchors.rightMargin: 4
        y: (parent.height - height) / 2
        width: 15
        height: 15
        radius: 4.5
        fill: [Theme.white(0.14)]

        Symbol {
            name: "chevron.up.chevron.down"
            colors: [Theme.white(0.9)]
        }
    }
}
