pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// Which device gets the mix, or how to come by one.
CardSection {
    id: card

    required property MixCoordinator coordinator
    required property PanelActions actions
    readonly property bool found: coordinator.blackHoleDevices.length > 0
    // How much higher the card is with a device than without.
    readonly property real growth: found ? 0 : hint.implicitHeight + Theme.cardSpacing + foundRow.implicitHeight
                                           - missingRow.implicitHeight

    title: qsTr("Output → BlackHole")
    icon: "dot.radiowaves.left.and.right"

    Item {
        id: missingRow

        objectName: "missingRow"
        visible: !card.found
        width: card.width - 2 * Theme.cardPadding
        implicitHeight: Math.max(message.height, rescan.height)
        height: implicitHeight

        GlassShape {
            id: orangeDot

            objectName: "dot"
            anchors.left: parent.left
            y: (parent.height - height) / 2
            width: 9
            height: 9
            radius: 4.5
            fill: [Theme.orange]
        }

        MarkdownLabel {
            id: message

            objectName: "missingText"
            anchors.left: orangeDot.right
            anchors.right: rescan.left
            anchors.leftMargin: 10
            anchors.rightMargin: 28
            y: (parent.height - height) / 2
            mirrored: card.LayoutMirroring.enabled
            face: Typography.body
            codeFamily: Typography.monospacedFamily
            markdown: qsTr("BlackHole not detected. Install via `brew install blackhole-2ch`.")
            color: Theme.white(0.85)
            // A line more for letters half as large again: the width stays what it is.
            lines: Math.ceil(2 * Typography.scale * Typography.scale)
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        GlassButtonStyle {
            id: rescan

            objectName: "rescan"
            anchors.right: parent.right
            y: (parent.height - height) / 2
            text: qsTr("Re-scan")
            onClicked: card.actions.refreshBlackHole()
        }
    }

    Item {
        id: foundRow

        objectName: "foundRow"
        visible: card.found
        width: card.width - 2 * Theme.cardPadding
        implicitHeight: Math.max(devicePicker.implicitHeight, refresh.implicitHeight)
        height: implicitHeight

        GlassShape {
            id: greenDot

            objectName: "dot"
            anchors.left: parent.left
            y: (parent.height - height) / 2
            width: 9
            height: 9
            radius: 4.5
            fill: [Theme.green]
            shadowColor: Theme.faded(Theme.green, 0.7)
            shadowRadius: 4
        }

        MenuPicker {
            id: devicePicker

            objectName: "devicePicker"
            anchors.left: greenDot.right
            anchors.right: refresh.left
            anchors.leftMargin: 10
            anchors.rightMargin: 10
            y: (parent.height - height) / 2
            title: qsTr("Device")
            rows: DeviceRows {
                devices: card.coordinator.blackHoleDevices
                selection: card.coordinator.selectedBlackHole
            }
            onPicked: tag => card.coordinator.selectedBlackHole = tag
        }

        GlassButtonStyle {
            id: refresh

            objectName: "refreshDevices"
            anchors.right: parent.right
            y: (parent.height - height) / 2
            text: qsTr("Refresh devices")
            symbol: "arrow.clockwise"
            onClicked: card.actions.refreshBlackHole()
        }
    }

    MarkdownLabel {
        id: hint

        objectName: "hint"
        visible: card.found
        width: card.width - 2 * Theme.cardPadding
        mirrored: card.LayoutMirroring.enabled
        face: Typography.caption
        markdown: qsTr("In Discord, set Input to **%1**.")
        argument: card.coordinator.selectedBlackHole ? card.coordinator.selectedBlackHole.name : "BlackHole"
        color: Theme.white(0.7)
        // A device may have a long name; more lines would push the controls out of a window of the least size.
        lines: 3
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
