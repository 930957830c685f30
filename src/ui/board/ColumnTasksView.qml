pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Vantrel.ViewModels

/** The cards of one cell, made only as far as they can be seen. */
ListView {
    id: root

    required property CellModel cell
    required property columnContent column
    required property BoardLayout frame
    /** Height of the gap to be opened where dragged cards would land; 0 for none. */
    required property real landingHeight

    readonly property int dropRow: cell?.dropRow ?? -1
    /** The gap behind the last card, where dragged cards would land. */
    property real tail: dropRow >= 0 && dropRow === count ? landingHeight + frame.cardGap : 0

    property bool isDraggedOver: false
    property real contentYBeforeDrag: 0

    onTailChanged: if (dropRow >= 0 && dropRow === count) positionViewAtEnd()

    Behavior on tail {
        NumberAnimation { duration: Theme.quick }
    }

    model: cell
    clip: true
    interactive: false
    reuseItems: true
    cacheBuffer: 60
    topMargin: frame.cellPadding
    bottomMargin: frame.cellPadding - frame.cardGap + tail
    T.ScrollBar.vertical: AppScrollBar {}

    Component.onCompleted: contentY = originY - topMargin + (cell?.scrollPosition ?? 0)
    Component.onDestruction: if (cell) cell.scrollPosition = contentY - originY + topMargin

    function showFocused() {
        const row = cell?.rowOf(frame.board.focusedTaskId) ?? -1;
        if (row >= 0)
            positionViewAtIndex(row, ListView.Contain);
    }

    Connections {
        target: root.frame.board

        function onFocusedTaskChanged() { root.showFocused(); }
    }
    Connections {
        target: root.cell

        // A card that was moved here by key goes on being seen.
        function onRowsInserted(parent, first, last) {
            const row = root.cell.rowOf(root.frame.board.focusedTaskId);
            if (row >= first && row <= last)
                Qt.callLater(root.showFocused);
        }
    }
    // While something is dragged over the cell the view shows where it would land; afterwards it is as it was.
    onDropRowChanged: {
        if (dropRow < 0) {
            contentY = contentYBeforeDrag;
            isDraggedOver = false;
            return;
        }
        if (!isDraggedOver) {
            isDraggedOver = true;
            contentYBeforeDrag = contentY;
        }
        positionViewAtIndex(Math.min(dropRow, count - 1), ListView.Contain);
    }

    WheelScroll {
        flickable: root
        turn: root.frame.wheelTurn
    }

    displaced: Transition {
        NumberAnimation { property: "y"; duration: Theme.move; easing.type: Easing.OutCubic }
    }
    move: displaced
    remove: Transition {
        NumberAnimation { property: "opacity"; to: 0; duration: Theme.quick }
    }

    delegate: ColumnTask {
        width: root.width
        cell: root.cell
        column: root.column
        frame: root.frame
        landingHeight: root.landingHeight
    }
}
