pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tolvenary

// A button that shows the chosen row and opens the list of rows. What is chosen is told by picked(). The combo box it is
// made from lends its role and its focus; rows and list are our own, as that one forgets its place when rows change.
T.ComboBox {
    id: picker

    required property string title
    required property PickerModel rows
    readonly property bool opened: menu.opened
    readonly property alias menu: menu

    signal picked(var tag)

    function pick(row: int) {
        if (row >= 0 && row < rows.count && row !== rows.selectedRow)
            picked(rows.tag(row));
    }

    implicitHeight: Math.max(Theme.pickerHeight, implicitContentHeight)
    focusPolicy: Qt.StrongFocus
    hoverEnabled: false

    Accessible.name: title
    Accessible.description: rows.selectedText
    Accessible.onPressAction: menu.open()
    Keys.onUpPressed: pick(rows.selectedRow - 1)
    Keys.onDownPressed: pick(rows.selectedRow + 1)
    Keys.onSpacePressed: event => {
        event.accepted = !typeAhead.isLetter(" ");
        if (event.accepted)
            menu.open();
    }
    Keys.onPressed: event => {
        event.accepted = event.modifiers === Qt.NoModifier && typeAhead.isLetter(event.text);
        if (event.accepted)
            pick(typeAhead.rowFor(event.text, rows.selectedRow));
    }

    TypeAhead {
        id: typeAhead

        model: picker.rows
    }

    TapHandler {
        onTapped: menu.open()
    }

    WheelHandler {
        // A touchpad turns by small parts of a wheel's notch; a row is a whole one.
        readonly property int notch: 120
        property real turned: 0

        acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
        onWheel: event => {
            turned += event.angleDelta.y;
            if (Math.abs(turned) < notch)
                return;
            picker.pick(picker.rows.selectedRow - Math.sign(turned));
            turned %= notch;
        }
    }

    background: GlassShape {
        radius: Theme.pickerRadius
        fill: [Theme.white(picker.pressed ? 0.16 : 0.10)]
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
