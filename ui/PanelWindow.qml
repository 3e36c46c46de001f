pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// The one window. It draws its own buttons and its own background; what is done to the window itself, the shell does.
Window {
    id: window

    required property MixCoordinator coordinator
    required property PanelActions actions
    readonly property alias content: content
    // Whether the compositor shows what lies behind the corners.
    property bool blended: false

    width: Theme.leastSize
    minimumWidth: Theme.leastSize
    minimumHeight: Theme.leastSize
    title: qsTr("Tolvenary")
    // From the outset: the shell styles the window only once it is shown, and a title bar would flash up until then.
    flags: Qt.Window | Qt.FramelessWindowHint
    Component.onCompleted: height = content.roomyHeight
    // Not every compositor keeps to the least size while the user drags.
    onWidthChanged: {
        if (visibility === Window.Windowed && width < minimumWidth)
            width = minimumWidth;
    }
    onHeightChanged: {
        if (visibility === Window.Windowed && height < minimumHeight)
            height = minimumHeight;
    }

    ContentView {
        id: content

        // Not by anchors: its texts are laid out before the window's root item has a size, and say how high it opens.
        width: window.width
        height: window.height
        coordinator: window.coordinator
        actions: window.actions
        cornerRadius: window.blended && window.visibility === Window.Windowed ? Theme.windowRadius : 0
        // Text that the user enlarges while the window is open must not push Start out of it.
        onRoomyHeightChanged: {
            if (Typography.scale > 1 && window.visibility === Window.Windowed)
                window.height = Math.max(window.height, roomyHeight);
        }
    }

    WindowGrip {
        anchors.fill: parent
        border: Theme.resizeBorder
    }

    Row {
        anchors.left: parent.left
        anchors.leftMargin: 8
        y: 8
        spacing: 8

        WindowButton {
            objectName: "close"
            text: qsTr("Close")
            tint: Theme.closeButton
            onClicked: window.close()
        }

        WindowButton {
            objectName: "minimise"
            text: qsTr("Minimise")
            tint: Theme.minimiseButton
            onClicked: window.showMinimized()
        }

        WindowButton {
            objectName: "zoom"
            text: qsTr("Zoom")
            tint: Theme.zoomButton
            onClicked: window.visibility === Window.Maximized ? window.showNormal() : window.showMaximized()
        }
    }
}
