pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Vantrel.ViewModels

/** The board: column headers that stay in place, and below them the swimlanes with their cells. */
FocusScope {
    id: root

    required property BoardViewModel board

    /** Where the pointer has asked for a menu; undefined for one that a key asks for. */
    property var menuPlace: undefined

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Kanban Board")

    Component.onCompleted: board.appear()

    Keys.onPressed: event => event.accepted = root.board.handleKey(event.key, event.modifiers)

    BoardLayout {
        id: layout
        board: root.board
        drag: cardDrag
        flights: flights
        availableWidth: root.width - 2 * windowPadding
        columnCount: headers.count
        hasFocus: root.activeFocus

        onFocusRequested: root.forceActiveFocus()
        onContextMenuRequested: (taskId, scenePosition) => {
            root.forceActiveFocus();
            root.menuPlace = root.mapFromItem(null, scenePosition);
            root.board.openContextMenu(taskId);
        }
        onRevealRequested: card => {
            revealing.card = card;
            revealing.restart();
        }
        onDraggedOver: position => {
            cardDrag.moveTo(position);
            verticalScroll.pointer = lanes.mapFromItem(null, position).y;
            horizontalScroll.pointer = strip.mapFromItem(null, position).x;
        }
    }
    Connections {
        target: root.board

        // A swimlane that is far away has no cells yet, and they no card that could ask to be seen.
        function onFocusedTaskChanged() {
            const row = root.board.focusedSwimLaneRow;
            if (row >= 0 && !lanes.itemAtIndex(row))
                lanes.positionViewAtIndex(row, ListView.Contain);
        }
    }

    // A completed card first goes to its new place.
    Timer {
        id: celebrating

        property var waiting: []

        interval: Theme.move + 100
        onTriggered: {
            for (const one of waiting.splice(0))
                layout.celebrated(one.taskId, one.type);
        }
    }
    Connections {
        target: root.board.celebrations

        function onWanted(taskId: string, type: int) {
            if (Theme.move === 0 || celebrating.waiting.length > 5)
                return;
            celebrating.waiting.push({taskId: taskId, type: type});
            celebrating.restart();
        }
    }

    Connections {
        target: root.board.contextMenu

        function onOpened() {
            const card = root.Window.activeFocusItem as KanbanCard;
            const isAskedByKey = root.menuPlace === undefined;
            // Beside the pointer, so that a press that follows at once is not one on the menu.
            const place = isAskedByKey ? (card ?? root).mapToItem(root, 14, 30)
                                       : Qt.point(root.menuPlace.x + 2, root.menuPlace.y + 2);
            const menu = contextMenu.createObject(root) as CardContextMenu;
            root.menuPlace = undefined;
            menu.popup(root, place);
            menu.currentIndex = isAskedByKey ? menu.firstIndex : -1;
        }
    }
    Component {
        id: contextMenu

        CardContextMenu {
            contextMenu: root.board.contextMenu
        }
    }

    // What a part of a card has to tell stands below that part of the card, which has the focus.
    Connections {
        target: root.board.popover

        function onOpened() {
            const card = root.Window.activeFocusItem as KanbanCard;
            const part = card?.partFor(root.board.popover.part) ?? root;
            popoverHolder.place = part.mapToItem(root, -12, part.height + 6);
        }
        function onChanged() {
            if (root.board.popover.kind === CardPopover.None)
                root.forceActiveFocus(Qt.PopupFocusReason);
        }
    }
    Lazy {
        id: popoverHolder

        property point place

        active: root.board.popover.kind !== CardPopover.None
        sourceComponent: Item {
            CardPopoverView {
                parent: root
                x: popoverHolder.place.x
                y: popoverHolder.place.y
                popover: root.board.popover
                visible: true
                onClosed: root.board.popover.close()
            }
        }
    }

    /** Behind the present turn: the views first bring the card's rows into place. */
    Timer {
        id: revealing

        property Item card: null

        interval: 0
        onTriggered: if (card) root.reveal(card)
    }

    function reveal(card: Item) {
        const margin = Theme.gap;
        const top = card.mapToItem(lanes.contentItem, 0, 0).y - margin;
        const bottom = top + card.height + 2 * margin;
        if (top < lanes.contentY)
            laneScroll.glideTo(top);
        else if (bottom > lanes.contentY + lanes.height)
            laneScroll.glideTo(bottom - lanes.height);

        const left = card.mapToItem(strip.contentItem, 0, 0).x - layout.windowPadding;
        const right = left + card.width + 2 * layout.windowPadding;
        if (left < strip.contentX)
            stripScroll.glideTo(left);
        else if (right > strip.contentX + strip.width)
            stripScroll.glideTo(right - strip.width);
    }

    // Between the cells nothing can be dropped, but what is dragged is still to be seen.
    DropArea {
        anchors.fill: parent
        onEntered: drag => {
            drag.accepted = cardDrag.active;
            if (drag.accepted)
                ++cardDrag.placesBelow;
        }
        onPositionChanged: drag => layout.draggedOver(mapToItem(null, drag.x, drag.y))
        onExited: --cardDrag.placesBelow
    }
    BoardIndicators {
        id: indicators
        width: parent.width
        board: root.board
    }

    Flickable {
        id: strip
        anchors.top: indicators.bottom
        anchors.bottom: parent.bottom
        width: parent.width
        contentWidth: layout.boardWidth + 2 * layout.windowPadding
        contentHeight: height
        interactive: false
        clip: true
        T.ScrollBar.horizontal: AppScrollBar {}

        WheelScroll {
            id: stripScroll
            flickable: strip
            orientation: Qt.Horizontal
            turn: layout.wheelTurn
        }

        Row {
            x: layout.windowPadding + layout.inset
            height: layout.headerHeight
            spacing: layout.columnGap

            Repeater {
                id: headers
                model: root.board.columns

                delegate: ColumnHeaderView {
                    width: layout.columnWidth
                    height: layout.headerHeight
                    zoom: layout.zoom
                }
            }
        }

        ListView {
            id: lanes
            x: layout.windowPadding
            y: layout.headerHeight
            width: layout.boardWidth
            height: strip.height - y
            spacing: Theme.laneGap
            topMargin: Theme.unit
            bottomMargin: layout.windowPadding
            interactive: false
            clip: true
            cacheBuffer: 200
            model: root.board.swimLanes
            T.ScrollBar.vertical: AppScrollBar {}
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Swimlanes")

            WheelScroll {
                id: laneScroll
                flickable: lanes
                turn: layout.wheelTurn
            }

            displaced: Transition {
                NumberAnimation { property: "y"; duration: Theme.move; easing.type: Easing.OutCubic }
            }
            move: displaced
            add: Transition {
                NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.move }
            }
            remove: Transition {
                NumberAnimation { property: "opacity"; to: 0; duration: Theme.quick }
            }

            delegate: BoardSwimLaneRow {
                width: lanes.width
                frame: layout
            }
        }
    }

    CardFlights {
        id: flights
        anchors.fill: parent
    }
    CardDrag {
        id: cardDrag
        anchors.fill: parent
        board: root.board
    }
    AutoScroll {
        id: verticalScroll
        scroller: laneScroll
        wanted: cardDrag.active
    }
    AutoScroll {
        id: horizontalScroll
        scroller: stripScroll
        wanted: cardDrag.active
    }
}
