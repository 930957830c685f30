pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** One cell of the board: the cards of a column in a swimlane, and the place where cards are dropped. */
Rectangle {
    id: root

    required property columnContent column
    required property string laneId
    required property BoardLayout frame

    readonly property CellModel cell: frame.board.cell(laneId, column.id)
    readonly property real zoom: frame.zoom
    readonly property real padding: frame.cellPadding
    readonly property bool isTargeted: drop.containsDrag && cell.dropRow >= 0

    radius: Theme.cardRadius * zoom
    color: isTargeted ? Theme.accentTint
         : column.color !== "" && frame.board.useColumnColors ? Qt.tint(Theme.cell, Qt.alpha(column.color, 0.04))
         : Theme.cell
    Accessible.role: Accessible.List
    Accessible.name: column.name

    Behavior on color {
        ColorAnimation { duration: Theme.quick }
    }

    Column {
        id: warning
        x: root.padding
        y: root.padding
        width: parent.width - 2 * x
        visible: root.cell?.warning ?? false
        height: visible ? implicitHeight + root.padding : 0

        Rectangle {
            width: parent.width
            height: 22 * root.zoom
            radius: Theme.chipRadius * root.zoom
            color: Theme.redTint

            Row {
                x: 8 * root.zoom
                anchors.verticalCenter: parent.verticalCenter
                spacing: 6 * root.zoom

                ThemedText {
                    text: root.cell?.warning ?? ""
                    color: Theme.redText
                    font.pixelSize: Theme.tiny * root.zoom
                    font.weight: Theme.headingWeight
                }
                ThemedText {
                    text: root.cell?.warningScope ?? ""
                    color: Theme.secondaryText
                    font.pixelSize: Theme.tiny * root.zoom
                }
            }
        }
    }
    ColumnTasksView {
        id: tasks
        anchors.fill: parent
        anchors.topMargin: warning.height
        cell: root.cell
        column: root.column
        frame: root.frame
        landingHeight: root.isTargeted ? root.frame.drag.landingHeight : 0
    }
    ColumnEmptyView {
        anchors.centerIn: parent
        visible: tasks.count === 0 && !root.isTargeted
        text: root.cell?.emptyText ?? ""
        zoom: root.zoom
    }
    Lazy {
        anchors.fill: parent
        active: root.isTargeted
        sourceComponent: DashedFrame {
            radius: root.radius
        }
    }

    DropArea {
        id: drop
        anchors.fill: parent

        property var offer: ({})

        function update(drag: var) {
            drag.accepted = root.frame.board.dragOver(root.cell, offer, drag.y / root.zoom);
            root.frame.draggedOver(mapToItem(null, drag.x, drag.y));
        }

        onEntered: drag => {
            const offered = {};
            for (const format of root.frame.board.dragFormats)
                offered[format] = drag.getDataAsString(format);
            offer = offered;
            update(drag);
            if (drag.accepted)
                ++root.frame.drag.placesBelow;
        }
        onPositionChanged: drag => update(drag)
        onExited: {
            --root.frame.drag.placesBelow;
            root.frame.board.dragLeft(root.cell);
        }
        onDropped: drag => {
            root.frame.drag.hasDropped = true;
            if (root.frame.board.drop(root.cell, offer, drag.y / root.zoom))
                drag.accept(Qt.MoveAction);
        }
    }
}
