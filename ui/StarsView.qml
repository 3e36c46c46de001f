pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// The stars; they begin to twinkle when they first appear.
StarField {
    Component.onCompleted: twinkle = true
}
