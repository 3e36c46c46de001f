pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// One of the panel's own texts with its inline Markdown; what stands in for %1 is shown verbatim.
Item {
    id: view

    required property string markdown
    required property textStyle face
    property string argument
    property color color: Theme.white(1)
    property int lines: 1

    implicitWidth: text.implicitWidth
    implicitHeight: Math.min(text.lineCount, lines) * face.lineHeight
    height: implicitHeight
    clip: text.lineCount > lines
    Accessible.role: Accessible.StaticText
    Accessible.name: InlineMarkdown.plain(markdown, argument)

    Text {
        id: text

        y: view.face.above
        width: view.width
        font: view.face.font
        color: view.color
        textFormat: Text.RichText
        wrapMode: Text.Wrap
        renderType: Text.NativeRendering
        text: InlineMarkdown.markup(view.markdown, view.argument, Typography.monospacedFamily)
        Accessible.ignored: true
    }
}
