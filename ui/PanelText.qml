pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// A text in its style's line box, drawn sharp and shown as it stands.
Text {
    required property textStyle face

    font: face.font
    lineHeight: face.lineHeight
    lineHeightMode: Text.FixedHeight
    topPadding: face.above
    bottomPadding: face.below
    textFormat: Text.PlainText
    renderType: Text.NativeRendering
    horizontalAlignment: Text.AlignLeft
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
