pragma Singleton
pragma ComponentBehavior: Bound

import QtQuick

// The colours and measures of the panel; lengths are in points.
QtObject {
    readonly property color cyan: "#64d2ff"
    readonly property color pink: "#ff375f"
    readonly property color purple: "#bf5af2"
    readonly property color blue: "#0a84ff"
    readonly property color green: "#30d158"
    readonly property color orange: "#ff9f0a"

    readonly property color window: Qt.rgba(0.04, 0.03, 0.10, 1)
    readonly property color dusk: Qt.rgba(0.08, 0.05, 0.18, 1)
    readonly property color night: Qt.rgba(0.05, 0.02, 0.12, 1)
    readonly property color menu: Qt.rgba(40 / 255, 35 / 255, 58 / 255, 1)
    readonly property color thumb: Qt.rgba(236 / 255, 236 / 255, 240 / 255, 1)

    readonly property color closeButton: "#ff5f57"
    readonly property color minimiseButton: "#febc2e"
    readonly property color zoomButton: "#28c840"

    readonly property int leastSize: 520
    readonly property int windowRadius: 10
    readonly property int margin: 22
    readonly property int topMargin: 44
    readonly property int columnSpacing: 18
    readonly property int cardPadding: 14
    readonly property int cardSpacing: 10
    readonly property int cardRadius: 14
    readonly property int buttonRadius: 10
    readonly property int chipRadius: 8
    readonly property int bubbleRadius: 10
    readonly property int pickerRadius: 6
    readonly property int pickerHeight: 23
    readonly property int menuPadding: 5
    readonly property int resizeBorder: 6

    function white(opacity: real): color {
        return Qt.rgba(1, 1, 1, opacity);
    }

    function faded(base: color, opacity: real): color {
        return Qt.rgba(base.r, base.g, base.b, opacity);
    }
}
