pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary
import TolvenaryDev

// What the fake system plays and lacks.
Window {
    id: controls

    required property FakeSound sound

    title: "Fake system"
    width: 420
    height: 220
    // Beside the panel, in case that no window manager places windows.
    x: 560
    y: 40
    visible: true
    color: "#0a081a"

    Column {
        x: 20
        y: 20
        width: parent.width - 40
        spacing: 14

        GainSlider {
            width: parent.width
            label: "Voice"
            value: controls.sound.microphone
            accent: Theme.pink
            onEdited: value => controls.sound.microphone = value
        }

        GainSlider {
            width: parent.width
            label: "Music"
            value: controls.sound.applications
            accent: Theme.orange
            onEdited: value => controls.sound.applications = value
        }

        Row {
            spacing: 10

            GlassButtonStyle {
                text: controls.sound.device ? "Unplug device" : "Plug device"
                onClicked: controls.sound.device = !controls.sound.device
            }

            GlassButtonStyle {
                text: controls.sound.permission ? "Take permission" : "Give permission"
                onClicked: controls.sound.permission = !controls.sound.permission
            }
        }

        PanelText {
            width: parent.width
            face: Typography.caption
            color: Theme.white(0.8)
            text: "In the device: " + controls.sound.peak.toFixed(2)
        }
    }
}
