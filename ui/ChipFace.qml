pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// What a glass button shows: its symbol, or without one its text.
Item {
    id: face

    required property string text
    required property string symbol

    implicitWidth: symbol === "" ? label.implicitWidth : picture.width
    implicitHeight: symbol === "" ? label.implicitHeight : picture.height
    Accessible.ignored: true

    PanelText {
        id: label

        visible: face.symbol === ""
        face: Typography.label
        text: face.text
        color: Theme.white(0.9)
        Accessible.ignored: true
    }

    Symbol {
        id: picture

        objectName: "symbol"
        visible: face.symbol !== ""
        width: implicitWidth * Typography.scale
        height: implicitHeight * Typography.scale
        name: face.symbol
        colors: [Theme.white(0.9)]
    }
}
