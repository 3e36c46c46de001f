pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// A titled glass card around one group of controls.
Item {
    id: card

    required property string title
    required property string icon
    default property alias content: column.data

    implicitHeight: column.implicitHeight

    GlassShape {
        anchors.fill: parent
        radius: Theme.cardRadius
        fill: [Theme.white(0.04)]
        outline: [Theme.white(0.18), Theme.white(0.04)]
        mirrored: card.LayoutMirroring.enabled
    }

    Column {
        id: column

        width: parent.width
        padding: Theme.cardPadding
        spacing: Theme.cardSpacing

        Row {
            objectName: "heading"
            width: card.width - 2 * Theme.cardPadding
            spacing: 8

            Symbol {
                objectName: "headingIcon"
                y: (parent.height - height) / 2
                width: implicitWidth * Typography.scale
                height: implicitHeight * Typography.scale
                name: card.icon
                colors: [Theme.cyan, Theme.purple]
                mirrored: card.LayoutMirroring.enabled
            }

            PanelText {
                objectName: "headingText"
                y: (parent.height - height) / 2
                face: Typography.heading
                text: card.title.toLocaleUpperCase()
                color: Theme.white(0.7)
                Accessible.role: Accessible.Heading
                Accessible.name: card.title
            }
        }
    }
}
