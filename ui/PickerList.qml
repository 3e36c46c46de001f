pragma ComponentBehavior: Bound

import QtQuick
import Tolvenary

// The rows of an open picker; keys and pointer move the highlight, picked() tells the choice.
ListView {
    id: list

    required property PickerModel rows
    required property string title
    required property real rowHeight
    // A pointer that rests is told of again and again; only one that moves, or that the rows move under, points.
    property bool pointed: false
    property point pointer
    readonly property int rowsInView: Math.max(1, Math.floor(height / rowHeight))

    signal picked(int row)

    function pointAt(row: int, place: point) {
        if (pointed && (moving || place !== pointer))
            currentIndex = row;
        pointed = true;
        pointer = place;
    }

    function showChosenRow() {
        pointed = false;
        // Anew from the top, because assistive tools list the rows in the order of their making.
        currentIndex = -1;
        model = null;
        model = rows;
        positionViewAtBeginning();
        forceLayout();
        currentIndex = rows.selectedRow;
        positionViewAtIndex(Math.max(0, rows.selectedRow), ListView.Contain);
    }

    model: rows
    implicitHeight: count * rowHeight
    // All rows are there at once: some assistive tools never learn of one that is made by scrolling to it.
    displayMarginBeginning: count * rowHeight
    displayMarginEnd: count * rowHeight
    clip: true
    focus: true
    boundsBehavior: Flickable.StopAtBounds
    highlightMoveDuration: 0

    Accessible.role: Accessible.List
    Accessible.name: title

    Keys.onReturnPressed: picked(currentIndex)
    Keys.onEnterPressed: picked(currentIndex)
    Keys.onPressed: event => {
        const places = {
            [Qt.Key_Home]: 0,
            [Qt.Key_End]: count - 1,
            [Qt.Key_PageUp]: Math.max(0, currentIndex - rowsInView),
            [Qt.Key_PageDown]: Math.min(count - 1, currentIndex + rowsInView)
        };
        event.accepted = true;
        if (event.key in places)
            currentIndex = places[event.key];
        else if (typeAhead.isLetter(event.text))
            currentIndex = typeAhead.rowFor(event.text, currentIndex);
        else if (event.key === Qt.Key_Space)
            picked(currentIndex);
        else
            event.accepted = false;
    }

    // A view follows its rows only with the next frame: until then the highlight would lie on a neighbour.
    Connections {
        target: list.rows

        function onTextsChanged() {
            list.forceLayout();
        }
    }

    TypeAhead {
        id: typeAhead

        model: list.rows
    }

    delegate: PickerRow {
        width: list.width
        height: list.rowHeight
        onPointedAt: place => list.pointAt(index, place)
        onPicked: list.picked(index)
    }
}
