pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// A gain as a multiplier, its digits in cells of equal width so that nothing jumps while it changes.
Item {
    id: readOut

    required property real value
    required property color color
    readonly property string text: inHundredths(value) + "×"

    // A half goes to the even digit, as printf has it; toFixed() rounds it up.
    function inHundredths(gain: real): string {
        const isHalf = Math.abs(gain * 8) % 2 === 1;
        return (isHalf ? Math.round(gain * 50) / 50 : gain).toFixed(2);
    }

    implicitWidth: Math.max(56, digits.implicitWidth)
    implicitHeight: digits.implicitHeight
    Accessible.ignored: true

    Row {
        id: digits

        anchors.right: parent.right
        LayoutMirroring.enabled: false

        Repeater {
            model: readOut.text.length

            PanelText {
                required property int index

                readonly property string sign: readOut.text.charAt(index)

                width: sign >= "0" && sign <= "9" ? Typography.readOut.digitWidth : implicitWidth
                centered: true
                face: Typography.readOut
                text: sign
                color: readOut.color
                Accessible.ignored: true
            }
        }
    }
}
