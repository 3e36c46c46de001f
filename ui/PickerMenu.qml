pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tolvenary

// The open list of a picker: its chosen row lies over the button, as far as the window has room.
T.Popup {
    id: menu

    required property PickerModel rows
    required property string title
    required property T.ComboBox button
    readonly property PickerList list: contentItem as PickerList
    readonly property real rowHeight: Math.max(Theme.pickerHeight, Typography.body.lineHeight + 7)

    signal picked(int row)

    x: button.mirrored ? button.width - width + 12 : -12
    y: -padding - Math.max(0, rows.selectedRow) * rowHeight
    width: button.width + 17
    height: Math.min(rows.count * rowHeight + 2 * padding, T.Overlay.overlay.height - 2 * margins)
    padding: Theme.menuPadding
    margins: 8
    modal: true
    focus: true
    dim: false
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    onAboutToShow: list.showChosenRow()
    // The box that a popup puts around its list, which assistive tools meet as a dialog.
    Component.onCompleted: contentItem.parent.Accessible.name = title

    background: GlassShape {
        radius: Theme.chipRadius
        fill: [Theme.menu]
        outline: [Theme.white(0.16)]
        shadowColor: Qt.rgba(0, 0, 0, 0.45)
        shadowRadius: 10
        shadowOffset: 6
    }

    contentItem: PickerList {
        rows: menu.rows
        title: menu.title
        rowHeight: menu.rowHeight
        // A popup lies outside of the panel and inherits nothing from it.
        LayoutMirroring.enabled: menu.button.mirrored
        LayoutMirroring.childrenInherit: true
        onPicked: row => {
            menu.close();
            menu.picked(row);
        }
    }
}
