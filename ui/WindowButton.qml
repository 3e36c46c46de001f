pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tolvenary

// One of the discs that close, minimise and zoom the window. Not a stop of the Tab key, as on any title bar.
T.Button {
    id: control

    required property color tint

    implicitWidth: 12
    implicitHeight: 12
    focusPolicy: Qt.NoFocus
    Accessible.onPressAction: control.clicked()

    background: GlassShape {
        radius: 6
        fill: [Qt.darker(control.tint, 4 / 3)]

        GlassShape {
            anchors.fill: parent
            anchors.margins: 0.5
            radius: 5.5
            fill: [control.down ? Qt.darker(control.tint, 1.3) : control.tint]
        }
    }
}
