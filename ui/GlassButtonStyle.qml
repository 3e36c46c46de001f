pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Tolvenary

// A small secondary button: a glass chip that shows its text or, where it has one, a symbol in its place.
T.Button {
    id: control

    property string symbol

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    leftPadding: 10
    rightPadding: 10
    topPadding: 6
    bottomPadding: 6
    scale: spring.value
    focusPolicy: Qt.StrongFocus

    // Assistive tools may press what is disabled, as this toolkit does not tell them.
    Accessible.onPressAction: {
        if (control.enabled)
            control.clicked();
    }

    Spring {
        id: spring

        response: 0.2
        dampingFraction: 0.7
        restful: Motion.reduced
        target: control.down ? 0.96 : 1
    }

    background: GlassShape {
        radius: Theme.chipRadius
        fill: [Theme.white(control.down ? 0.18 : 0.08)]
        outline: [Theme.white(0.18)]

        FocusRing {
            shown: control.visualFocus
            cornerRadius: Theme.chipRadius
        }
    }

    contentItem: ChipFace {
        text: control.text
        symbol: control.symbol
    }
}
