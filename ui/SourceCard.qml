pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// Which application to name as the source, and how loud applications are in the mix.
CardSection {
    id: card

    required property MixCoordinator coordinator
    required property PanelActions actions
    readonly property real innerWidth: width - 2 * Theme.cardPadding

    title: qsTr("Source app")
    icon: "app.dashed"

    Item {
        objectName: "pickerRow"
        width: card.innerWidth
        implicitHeight: Math.max(appPicker.implicitHeight, refresh.implicitHeight)
        height: implicitHeight

        MenuPicker {
            id: appPicker

            objectName: "appPicker"
            anchors.left: parent.left
            anchors.right: refresh.left
            anchors.rightMargin: 8
            y: (parent.height - height) / 2
            title: qsTr("App")
            rows: ApplicationRows {
                placeholder: qsTr("— pick an app —")
                applications: card.coordinator.availableApps
                selection: card.coordinator.selectedAppID
            }
            onPicked: tag => card.coordinator.selectedAppID = tag
        }

        GlassButtonStyle {
            id: refresh

            objectName: "refreshApps"
            anchors.right: parent.right
            y: (parent.height - height) / 2
            text: qsTr("Refresh apps")
            symbol: "arrow.clockwise"
            onClicked: card.actions.refreshApps()
        }
    }

    PanelText {
        objectName: "note"
        width: card.innerWidth
        face: Typography.caption
        text: qsTr("Whole-system audio is captured. Picker is cosmetic — pick whatever you like.")
        color: Theme.white(0.55)
        lines: 0
    }

    GainSlider {
        objectName: "appGain"
        width: card.innerWidth
        label: qsTr("App gain")
        value: card.coordinator.appGain
        accent: Theme.cyan
        onEdited: value => card.coordinator.appGain = value
    }
}
