pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tolvenary

// A labelled gain control with a numeric read-out. It shows the value it is given and asks for others by edited().
Item {
    id: gain

    required property string label
    required property real value
    required property color accent

    signal edited(real value)

    // A value from elsewhere may lie outside the range: the read-out tells it, the thumb stays at the end.
    readonly property real shown: Math.min(slider.to, Math.max(slider.from, value))

    function move(by: real) {
        edited(Math.min(slider.to, Math.max(slider.from, value + by)));
    }

    implicitHeight: Math.max(20, name.implicitHeight)

    PanelText {
        id: name

        objectName: "label"
        anchors.left: parent.left
        y: (parent.height - height) / 2
        width: Math.max(76, implicitWidth)
        face: Typography.label
        text: gain.label
        color: Theme.white(0.85)
        Accessible.ignored: true
    }

    T.Slider {
        id: slider

        // What assistive tools read the range from.
        readonly property real minimumValue: from
        readonly property real maximumValue: to

        objectName: "slider"
        anchors.left: name.right
        anchors.right: number.left
        anchors.leftMargin: 12
        anchors.rightMargin: 12
        y: (parent.height - height) / 2
        height: 20
        from: 0
        to: 2
        value: gain.shown
        focusPolicy: Qt.StrongFocus

        Accessible.name: gain.label
        Accessible.onIncreaseAction: gain.move(0.05)
        Accessible.onDecreaseAction: gain.move(-0.05)
        Keys.onLeftPressed: gain.move(mirrored ? 0.05 : -0.05)
        Keys.onRightPressed: gain.move(mirrored ? -0.05 : 0.05)
        Keys.onUpPressed: gain.move(0.05)
        Keys.onDownPressed: gain.move(-0.05)
        Keys.onPressed: event => {
            const steps = {
                [Qt.Key_PageUp]: 0.25,
                [Qt.Key_PageDown]: -0.25,
                [Qt.Key_Home]: from - gain.value,
                [Qt.Key_End]: to - gain.value
            };
            event.accepted = event.key in steps;
            if (event.accepted)
                gain.move(steps[event.key]);
        }
        // Pointer, keys and assistive tools all change the value; what merely followed the gain is not asked for again.
        onValueChanged: {
            if (value !== gain.shown)
                gain.edited(value);
        }

        background: Rectangle {
            objectName: "track"
            y: (slider.height - height) / 2
            width: slider.width
            height: 4
            radius: 2
            color: Theme.white(0.14)

            Rectangle {
                objectName: "filled"
                x: slider.mirrored ? parent.width - width : 0
                width: 9 + slider.position * (parent.width - 18)
                height: parent.height
                radius: parent.radius
                color: gain.accent
            }
        }

        handle: GlassShape {
            objectName: "thumb"
            x: slider.visualPosition * (slider.width - width)
            y: (slider.height - height) / 2
            width: 18
            height: 18
            radius: 9
            fill: [Theme.thumb]
            shadowColor: Qt.rgba(0, 0, 0, 0.45)
            shadowRadius: 1.5
            shadowOffset: 1

            // A thin dark rim, the half point that looks out from behind.
            GlassShape {
                anchors.fill: parent
                anchors.margins: -0.5
                z: -1
                radius: 9.5
                fill: [Qt.rgba(0, 0, 0, 0.25)]
            }

            FocusRing {
                shown: slider.visualFocus
                cornerRadius: 9
            }
        }
    }

    GainReadOut {
        id: number

        objectName: "readOut"
        anchors.right: parent.right
        y: (parent.height - height) / 2
        value: gain.value
        color: gain.accent
    }
}
