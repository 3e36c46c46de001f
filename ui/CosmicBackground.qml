pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// The dark background of the whole window: gradient, two glows, stars.
Item {
    id: background

    property alias cornerRadius: gradient.cornerRadius

    CosmicGradient {
        id: gradient

        anchors.fill: parent
        base: [Theme.window, Theme.dusk, Theme.night]
        topGlow: Theme.faded(Theme.purple, 0.35)
        bottomGlow: Theme.faded(Theme.cyan, 0.18)
        glowStart: 30
        topGlowEnd: 420
        bottomGlowEnd: 380
        mirrored: background.LayoutMirroring.enabled
    }

    StarsView {
        objectName: "stars"
        anchors.fill: parent
        opacity: 0.85
        restful: Motion.reduced
        paused: Motion.paused
    }
}
