pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tolvenary

// The one main button; its colours tell whether what it starts is active.
T.Button {
    id: control

    required property bool isActive
    property string symbol

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    leftPadding: 18
    rightPadding: 18
    topPadding: 10
    bottomPadding: 10
    scale: spring.value
    focusPolicy: Qt.StrongFocus

    Accessible.description: enabled ? "" : qsTr("Unavailable")
    // Assistive tools are not told that a button is disabled, and may press it all the same.
    Accessible.onPressAction: {
        if (enabled)
            clicked();
    }

    Spring {
        id: spring

        response: 0.25
        dampingFraction: 0.7
        restful: Motion.reduced
        target: control.down ? 0.96 : 1
    }

    background: GlassShape {
        radius: Theme.buttonRadius
        fill: control.isActive ? [Theme.pink, Theme.purple, Theme.blue] : [Theme.cyan, Theme.blue, Theme.purple]
        outline: [Theme.white(0.35)]
        shadowColor: Theme.faded(control.isActive ? Theme.pink : Theme.cyan, 0.45)
        shadowRadius: 10
        shadowOffset: 4
        mirrored: control.mirrored
        opacity: control.enabled ? 1 : 0.5

        FocusRing {
            shown: control.visualFocus
            cornerRadius: Theme.buttonRadius
        }
    }

    contentItem: StartFace {
        objectName: "label"
        text: control.text
        symbol: control.symbol
        // A faded button shows the night through its label, not its own colours.
        color: control.enabled ? Theme.white(1) : Qt.tint(Theme.dusk, Theme.white(0.5))
    }
}
