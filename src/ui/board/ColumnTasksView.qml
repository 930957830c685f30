pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Vantrel.Ui
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

    /** The row of the card with the focus, as far as is known; -1 if that is not one of these. */
    property int focusedRow: -1
    property bool isAtHome: false
    property bool isDraggedOver: false
    property real scrolledBeforeDrag: 0
    /** How far the cell is scrolled. */
    readonly property real scrolled: contentY - originY + topMargin

    onTailChanged: if (dropRow >= 0 && dropRow === count) positionViewAtEnd()

    Behavior on tail {
        enabled: !root.frame.drag.hasDropped
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

    // Where the view was scrolled to when it was last here; it first has to know its cards.
    Component.onCompleted: {
        // The view would keep its current row, wherever it is. Without one from the start, Qt 6.4 asks for that row of
        // an empty cell and complains.
        currentIndex = -1;
        returning.start();
    }
    onContentYChanged: if (isAtHome && cell && height > 0) cell.scrollPosition = contentY - originY + topMargin

    Timer {
        id: returning
        interval: 0
        onTriggered: {
            const place = root.cell?.scrollPosition ?? 0;
            if (place > 0) {
                root.forceLayout();
                root.scrollTo(place);
            }
            root.isAtHome = true;
        }
    }

    function scrollTo(place: real) {
        contentY = originY - topMargin + place;
    }
    function showFocused() {
        focusedRow = cell?.rowOf(frame.board.focusedTaskId) ?? -1;
        if (focusedRow >= 0)
            positionViewAtIndex(focusedRow, ListView.Contain);
    }

    onCountChanged: arriving.restart()

    /** Behind the present turn, when the cards have come to their places. */
    Timer {
        id: arriving
        interval: 0
        onTriggered: {
            // To a screen reader the cards come in the order in which the view holds them.
            ReadingOrder.arrange(root.contentItem);
            root.followFocused();
        }
    }

    /** A card that is moved by key, to here or within the cell, goes on being seen. After a drop the cell stays. */
    function followFocused() {
        const before = focusedRow;
        focusedRow = cell?.rowOf(frame.board.focusedTaskId) ?? -1;
        const isByKey = before < 0 || (frame.hasFocus && !restoring.running);
        if (focusedRow >= 0 && focusedRow !== before && isByKey)
            showFocused();
    }

    Connections {
        target: root.frame.board

        function onFocusedTaskChanged() { root.showFocused(); }
    }
    Component {
        id: nameField
        CardNameField {
            editor: root.frame.board.nameEditor
        }
    }
    Connections {
        target: root.frame.board.nameEditor

        function onTaskChanged() { naming.restart(); }
        function onAlertChanged() { naming.restart(); }
    }
    /** Behind the present turn: a sheet in front of the board has gone then. */
    Timer {
        id: naming
        interval: 0
        onTriggered: root.nameTask()
    }
    /** Where the name of one of the cards is being changed. */
    property CardNameField field: null

    function nameTask() {
        const editor = frame.board.nameEditor;
        const row = editor.alertMessage === "" ? cell?.rowOf(editor.taskId) ?? -1 : -1;
        if (row < 0)
            return;
        positionViewAtIndex(row, ListView.Contain);
        const card = (itemAtIndex(row) as ColumnTask)?.cardItem;
        if (field)
            field.forceActiveFocus(Qt.OtherFocusReason);
        else if (card)
            field = nameField.createObject(card, {card: card}) as CardNameField;
    }

    Component {
        id: celebration
        CardCelebration {}
    }
    Connections {
        target: root.frame

        function onCelebrated(taskId: string, type: int) {
            const card = (root.itemAtIndex(root.cell.rowOf(taskId)) as ColumnTask)?.cardItem;
            if (card)
                celebration.createObject(card, {card: card, type: type});
        }
    }

    // While something is dragged over the cell the view shows where it would land; afterwards it is as it was. What has
    // been dropped may shift the origin a little later.
    onDropRowChanged: {
        if (dropRow < 0) {
            isDraggedOver = false;
            restoring.restart();
            scrollTo(scrolledBeforeDrag);
            return;
        }
        if (!isDraggedOver) {
            isDraggedOver = true;
            scrolledBeforeDrag = scrolled;
        }
        positionViewAtIndex(Math.min(dropRow, count - 1), ListView.Contain);
    }
    onOriginYChanged: if (restoring.running) scrollTo(scrolledBeforeDrag)

    Timer {
        id: restoring
        interval: 2 * Theme.move + 50
    }
    WheelScroll {
        flickable: root
        turn: root.frame.wheelTurn
    }

    remove: Transition {
        NumberAnimation { property: "opacity"; to: 0; duration: Theme.quick }
    }

    delegate: ColumnTask {
        width: root.width
        cell: root.cell
        column: root.column
        frame: root.frame
        landingHeight: root.landingHeight
        onPlaced: arriving.restart()
    }
}
