pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// One row of an open list.
Item {
    id: row

    required property int index
    required property string text
    required property bool chosen
    readonly property bool highlighted: ListView.isCurrentItem

    signal pointedAt(point place)
    signal picked

    Accessible.role: Accessible.ListItem
    Accessible.name: text
    Accessible.selectable: true
    Accessible.selected: chosen
    Accessible.focusable: true
    Accessible.focused: highlighted
    Accessible.onPressAction: picked()

    Rectangle {
        anchors.fill: parent
        visible: row.highlighted
        radius: 5
        color: Theme.blue
    }

    Symbol {
        anchors.left: parent.left
        anchors.leftMargin: 3
        y: (parent.height - height) / 2
        visible: row.chosen
        name: "checkmark"
        colors: [Theme.white(1)]
    }

    PanelText {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.leftMargin: 16
        anchors.rightMargin: 12
        y: (parent.height - height) / 2
        face: Typography.body
        text: row.text
        color: Theme.white(row.highlighted ? 1 : 0.9)
        Accessible.ignored: true
    }

    HoverHandler {
        onPointChanged: {
            if (hovered)
                row.pointedAt(point.scenePosition);
        }
    }

    TapHandler {
        onTapped: row.picked()
    }
}
