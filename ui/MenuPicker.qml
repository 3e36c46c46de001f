pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tolvenary

// A button that shows the chosen row and opens the list of rows. What is chosen is told by picked().
T.Button {
    id: picker

    required property string title
    required property PickerModel rows

    signal picked(var tag)

    function pick(row: int) {
        if (row >= 0 && row < rows.count && row !== rows.selectedRow)
            picked(rows.tag(row));
    }

    implicitHeight: Math.max(Theme.pickerHeight, implicitContentHeight)
    text: title
    focusPolicy: Qt.StrongFocus
    onClicked: menu.open()

    Accessible.role: Accessible.ComboBox
    Accessible.name: title
    Accessible.description: rows.selectedText
    Accessible.onPressAction: menu.open()
    Keys.onUpPressed: pick(rows.selectedRow - 1)
    Keys.onDownPressed: pick(rows.selectedRow + 1)
    Keys.onPressed: event => {
        event.accepted = typeAhead.isLetter(event.text);
        if (event.accepted)
            picker.pick(typeAhead.rowFor(event.text, picker.rows.selectedRow));
    }

    TypeAhead {
        id: typeAhead

        model: picker.rows
    }

    WheelHandler {
        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => picker.pick(picker.rows.selectedRow - Math.sign(event.angleDelta.y))
    }

    background: GlassShape {
        radius: Theme.pickerRadius
        fill: [Theme.white(picker.down ? 0.16 : 0.10)]
        outline: [Theme.white(0.12)]

        FocusRing {
            shown: picker.visualFocus
            cornerRadius: Theme.pickerRadius
        }
    }

    contentItem: PickerFace {
        text: picker.rows.selectedText
    }

    PickerMenu {
        id: menu

        rows: picker.rows
        title: picker.title
        button: picker
        onPicked: row => picker.pick(row)
    }
}
