pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** One cell of the board: the cards of a column in a swimlane, and the place where cards are dropped. */
Rectangle {
    id: root

    required property columnContent column
    required property string laneId
    required property KanbanBoard view

    readonly property CellModel cell: view.board.cell(laneId, column.id)
    readonly property real zoom: view.zoom
    readonly property real padding: Theme.gap * zoom
    readonly property bool isTargeted: drop.containsDrag && cell.dropRow >= 0

    radius: Theme.cardRadius * zoom
    color: isTargeted ? Theme.accentTint
         : column.color !== "" && view.board.useColumnColors ? Qt.tint(Theme.cell, Qt.alpha(column.color, 0.06))
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
                    color: Theme.red
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
        view: root.view
        padding: root.padding
        landingHeight: root.isTargeted ? root.view.cardDrag.landingHeight : 0
    }
    ColumnEmptyView {
        anchors.centerIn: parent
        visible: tasks.count === 0 && !root.isTargeted
        text: root.cell?.emptyText ?? ""
        zoom: root.zoom
    }
    Loader {
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
            drag.accepted = root.view.board.dragOver(root.cell, offer, drag.y / root.zoom);
            root.view.dragPointer = root.mapToItem(root.view, drag.x, drag.y);
        }

        onEntered: drag => {
            const offered = {};
            for (const format of root.view.board.dragFormats)
                offered[format] = drag.getDataAsString(format);
            offer = offered;
            update(drag);
        }
        onPositionChanged: drag => update(drag)
        onExited: root.view.board.dragLeft(root.cell)
        onDropped: drag => {
            if (root.view.board.drop(root.cell, offer, drag.y / root.zoom))
                drag.accept(Qt.MoveAction);
        }
    }
}
