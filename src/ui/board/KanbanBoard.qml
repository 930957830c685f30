pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Vantrel.ViewModels

/** The board: column headers that stay in place, and below them the swimlanes with their cells. */
FocusScope {
    id: root

    required property BoardViewModel board

    readonly property real zoom: board.zoomLevel
    readonly property real padding: Theme.windowPadding
    /** Between a swimlane's edge and its cells. */
    readonly property real inset: Theme.cardPadding + 1
    readonly property real gap: Theme.laneGap * zoom
    readonly property int columnCount: headers.count
    readonly property real columnWidth: Math.max(
        Theme.minimumColumnWidth * zoom,
        (width - 2 * padding - 2 * inset - (columnCount - 1) * gap) / Math.max(1, columnCount))
    readonly property real boardWidth: columnCount * (columnWidth + gap) - gap + 2 * inset

    readonly property alias cardDrag: drag
    /** Where dragged cards were last seen over a cell. */
    property point dragPointer: Qt.point(0, 0)

    Accessible.role: Accessible.Pane
    Accessible.name: qsTr("Kanban Board")

    Component.onCompleted: board.appear()

    Keys.onPressed: event => event.accepted = root.board.handleKey(event.key, event.modifiers)

    Connections {
        target: root.board

        function onFocusedTaskChanged() {
            const row = root.board.focusedSwimLaneRow;
            if (row >= 0 && !lanes.itemAtIndex(row))
                lanes.positionViewAtIndex(row, ListView.Contain);
        }
    }

    /** Scrolls until the item, a card, can be seen. */
    function reveal(item: Item) {
        const margin = Theme.gap;
        const top = item.mapToItem(lanes.contentItem, 0, 0).y - margin;
        const bottom = top + item.height + 2 * margin;
        if (top < lanes.contentY)
            lanes.scrollTo(top);
        else if (bottom > lanes.contentY + lanes.height)
            lanes.scrollTo(bottom - lanes.height);

        const left = item.mapToItem(strip.contentItem, 0, 0).x - root.padding;
        const right = left + item.width + 2 * root.padding;
        if (left < strip.contentX)
            strip.contentX = left;
        else if (right > strip.contentX + strip.width)
            strip.contentX = right - strip.width;
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
        contentWidth: root.boardWidth + 2 * root.padding
        contentHeight: height
        interactive: false
        clip: true
        T.ScrollBar.horizontal: AppScrollBar {}

        WheelScroll {
            flickable: strip
            orientation: Qt.Horizontal
        }

        Row {
            x: root.padding + root.inset
            height: root.board.columnHeaderHeight * root.zoom
            spacing: root.gap

            Repeater {
                id: headers
                model: root.board.columns

                delegate: ColumnHeaderView {
                    width: root.columnWidth
                    height: parent?.height ?? 0
                    zoom: root.zoom
                }
            }
        }

        ListView {
            id: lanes

            property bool resizing: false

            x: root.padding
            y: root.board.columnHeaderHeight * root.zoom
            width: root.boardWidth
            height: strip.height - y
            spacing: Theme.laneGap
            bottomMargin: root.padding
            topMargin: Theme.unit
            interactive: false
            clip: true
            cacheBuffer: 200
            model: root.board.swimLanes
            T.ScrollBar.vertical: AppScrollBar {}
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Swimlanes")

            function scrollTo(y: real) {
                glide.stop();
                glide.to = Math.max(originY - topMargin,
                                    Math.min(y, originY + contentHeight + bottomMargin - height));
                glide.start();
            }

            NumberAnimation on contentY {
                id: glide
                running: false
                duration: Theme.move
                easing.type: Easing.OutCubic
            }
            WheelScroll {
                id: laneScroll
                flickable: lanes
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
                view: root
            }
        }
    }

    CardDrag {
        id: drag
        board: root.board
    }

    AutoScroll {
        scroller: laneScroll
        wanted: drag.active
        pointerY: lanes.mapFromItem(root, root.dragPointer).y
    }
}
