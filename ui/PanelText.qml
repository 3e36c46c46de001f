pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// A text that is shown as it stands.
PlainLabel {
    mirrored: LayoutMirroring.enabled
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
