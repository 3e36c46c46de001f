pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// The one panel: everything it shows is the coordinator's state, everything it does is a call to it.
Item {
    id: view

    required property MixCoordinator coordinator
    required property PanelActions actions
    property real cornerRadius: 0
    // High enough for every state that the panel can take on.
    readonly property real roomyHeight: Math.max(Theme.leastSize, column.implicitHeight + output.growth + 2)

    LayoutMirroring.enabled: Application.layoutDirection === Qt.RightToLeft
    LayoutMirroring.childrenInherit: true
    implicitWidth: Theme.leastSize
    implicitHeight: Math.max(Theme.leastSize, column.implicitHeight)

    CosmicBackground {
        anchors.fill: parent
        cornerRadius: view.cornerRadius
    }

    WindowGrip {
        anchors.fill: parent
        moves: true
    }

    Column {
        id: column

        objectName: "column"
        y: Math.floor((view.height - height) / 2)
        width: parent.width
        topPadding: Theme.topMargin
        bottomPadding: Theme.margin
        leftPadding: Theme.margin
        rightPadding: Theme.margin
        spacing: Theme.columnSpacing

        Column {
            objectName: "header"
            width: view.width - 2 * Theme.margin
            spacing: 2

            PanelText {
                objectName: "title"
                width: parent.width
                face: Typography.title
                text: qsTr("Tolvenary")
                color: Theme.white(1)
                Accessible.role: Accessible.Heading
            }

            PanelText {
                objectName: "subtitle"
                width: parent.width
                face: Typography.callout
                text: qsTr("mic + system audio → BlackHole 2ch")
                color: Theme.white(0.6)
            }
        }

        SourceCard {
            objectName: "sourceCard"
            width: view.width - 2 * Theme.margin
            coordinator: view.coordinator
            actions: view.actions
        }

        CardSection {
            id: microphone

            objectName: "microphoneCard"
            width: view.width - 2 * Theme.margin
            title: qsTr("Microphone")
            icon: "mic.fill"

            GainSlider {
                objectName: "micGain"
                width: microphone.width - 2 * Theme.cardPadding
                label: qsTr("Mic gain")
                value: view.coordinator.micGain
                accent: Theme.pink
                onEdited: value => view.coordinator.micGain = value
            }
        }

        OutputCard {
            id: output

            objectName: "outputCard"
            width: view.width - 2 * Theme.margin
            coordinator: view.coordinator
            actions: view.actions
        }

        Item {
            objectName: "controlRow"
            width: view.width - 2 * Theme.margin
            height: Math.max(startButton.height, bubble.height)

            StarburstButtonStyle {
                id: startButton

                objectName: "startButton"
                anchors.left: parent.left
                y: (parent.height - height) / 2
                text: view.coordinator.isRunning ? qsTr("Stop") : qsTr("Start")
                symbol: view.coordinator.isRunning ? "stop.fill" : "play.fill"
                isActive: view.coordinator.isRunning
                enabled: view.coordinator.selectedBlackHole ? true : false
                onClicked: view.actions.startOrStop()
            }

            StatusBubble {
                id: bubble

                objectName: "bubble"
                anchors.left: startButton.right
                anchors.right: parent.right
                anchors.leftMargin: 14
                y: (parent.height - height) / 2
                text: view.coordinator.status
                running: view.coordinator.isRunning
            }
        }
    }

    Shortcut {
        sequences: ["Return", "Enter"]
        autoRepeat: false
        enabled: startButton.enabled
        onActivated: startButton.clicked()
    }
}
