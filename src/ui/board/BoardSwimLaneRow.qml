pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** A swimlane: its header, and while it is open one cell for each column. */
Rectangle {
    id: root

    required property swimLaneContent lane
    required property BoardLayout frame

    readonly property real zoom: frame.zoom
    readonly property real headerHeight: 35 * zoom
    /** The height that the resizer proposes, until it is stored; 0 while it rests. */
    property real proposedHeight: 0
    readonly property real bodyHeight: lane.isExpanded ? (proposedHeight || lane.height) * zoom : 0
    property real shownBodyHeight: bodyHeight

    height: headerHeight + shownBodyHeight + 2
    radius: Theme.windowPartRadius
    color: Theme.surface
    border.width: 1
    border.color: Theme.line
    Accessible.role: Accessible.Grouping
    Accessible.name: lane.name

    Behavior on shownBodyHeight {
        id: slide
        enabled: false
        NumberAnimation { duration: Theme.move; easing.type: Easing.OutCubic }
    }
    // What the zoom or the resizer changes follows at once; opening, closing and isolation slide.
    Connections {
        target: root.frame

        function onZoomChanged() { slide.enabled = false; }
    }
    onLaneChanged: slide.enabled = proposedHeight === 0

    SwimLaneHeaderView {
        x: 1
        y: 1
        width: parent.width - 2
        height: root.headerHeight
        lane: root.lane
        zoom: root.zoom
        onToggled: root.frame.board.toggleSwimLane(root.lane.id)
        onIsolationToggled: root.frame.board.toggleIsolation(root.lane.id)
    }
    Rectangle {
        x: 1
        y: root.headerHeight
        width: parent.width - 2
        height: 1
        visible: root.shownBodyHeight > 0
        color: Theme.line
    }

    Lazy {
        x: root.frame.inset
        y: root.headerHeight + 1
        width: parent.width - 2 * x
        height: root.shownBodyHeight
        active: root.shownBodyHeight > 0
        clip: root.shownBodyHeight !== root.bodyHeight
        sourceComponent: Item {
            Row {
                y: Theme.cardPadding
                height: Math.max(0, parent.height - 2 * Theme.cardPadding)
                spacing: root.frame.columnGap

                Repeater {
                    model: root.frame.board.columns

                    KanbanColumn {
                        width: root.frame.columnWidth
                        height: parent?.height ?? 0
                        laneId: root.lane.id
                        frame: root.frame
                    }
                }
            }
            SwimLaneResizer {
                width: parent.width
                anchors.bottom: parent.bottom
                laneHeight: root.proposedHeight || root.lane.height
                heightText: root.lane.heightText
                zoom: root.zoom
                onHeightMoved: height => {
                    slide.enabled = false;
                    root.proposedHeight = root.frame.board.clampedHeight(height);
                }
                onHeightChosen: height => {
                    root.frame.board.setSwimLaneHeight(root.lane.id, height);
                    root.proposedHeight = 0;
                }
            }
        }
    }
}
