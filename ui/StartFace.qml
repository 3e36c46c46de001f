pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// The symbol and the text of the main button, in the middle of it.
Item {
    id: face

    required property string text
    required property string symbol

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
            name: face.symbol
            colors: [Theme.white(1)]
        }

        PanelText {
            objectName: "text"
            face: Typography.mainButton
            text: face.text
            color: Theme.white(1)
            Accessible.ignored: true
        }
    }
}
