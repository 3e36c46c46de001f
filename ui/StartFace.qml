pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// The symbol and the text of the main button, in the middle of it.
Item {
    id: face

    required property string text
    required property string symbol
    required property color color

    implicitWidth: Math.max(100, row.implicitWidth)
    implicitHeight: row.implicitHeight
    Accessible.ignored: true

    Row {
        id: row

        x: (parent.width - width) / 2
        y: (parent.height - height) / 2
        spacing: 8

        Symbol {
            objectName: "symbol"
            y: (parent.height - height) / 2
            width: implicitWidth * Typography.scale
            height: implicitHeight * Typography.scale
            name: face.symbol
            colors: [face.color]
        }

        PanelText {
            objectName: "text"
            face: Typography.mainButton
            text: face.text
            color: face.color
            Accessible.ignored: true
        }
    }
}
