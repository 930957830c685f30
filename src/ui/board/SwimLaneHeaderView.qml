import QtQuick
import Vantrel.ViewModels

/** Names a swimlane and tells its share of the work. A click anywhere on it opens or closes the swimlane. */
Item {
    id: root

    required property swimLaneContent lane
    property real zoom: 1

    signal toggled
    signal isolationToggled

    Accessible.role: Accessible.Button
    Accessible.name: lane.toggleLabel
    Accessible.description: lane.workloadHelp
    Accessible.onPressAction: root.toggled()

    Rectangle {
        anchors.fill: parent
        anchors.margins: 1
        radius: Theme.windowPartRadius - 1
        color: hover.hovered ? Theme.hover : "transparent"
        opacity: 0.6

        Behavior on color {
            ColorAnimation { duration: Theme.quick }
        }
    }
    Row {
        id: row
        x: Theme.laneGap * root.zoom
        height: parent.height
        spacing: Theme.gap * root.zoom

        SymbolImage {
            anchors.verticalCenter: parent.verticalCenter
            symbol: "chevron.right"
            size: Theme.smallIconSize * root.zoom
            color: Theme.secondaryText
            rotation: root.lane.isExpanded ? 90 : 0

            Behavior on rotation {
                NumberAnimation { duration: Theme.move; easing.type: Easing.OutCubic }
            }
        }
        SymbolImage {
            anchors.verticalCenter: parent.verticalCenter
            symbol: root.lane.icon
            size: Theme.iconSize * root.zoom
            color: root.lane.color !== "" ? root.lane.color : Theme.text
        }
        ThemedText {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, root.width * 0.6)
            text: root.lane.name
            font.pixelSize: Theme.body * root.zoom
            font.weight: Theme.headingWeight
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        Pill {
            id: workload
            readonly property color band: root.lane.workloadColor !== "" ? root.lane.workloadColor : Theme.secondaryText

            anchors.verticalCenter: parent.verticalCenter
            text: root.lane.workload
            font.pixelSize: Theme.tiny * root.zoom
            font.weight: Theme.titleWeight
            textColor: Theme.legible(band)
            color: root.lane.workloadColor !== "" ? Theme.tinted(band) : Theme.rail
        }
        SymbolImage {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.lane.isIsolated
            symbol: "eye.circle.fill"
            size: Theme.iconSize * root.zoom
            color: Theme.accent
        }
    }
    HoverHandler {
        id: hover
        cursorShape: Qt.PointingHandCursor
        readonly property bool onWorkload: hovered && workload.contains(workload.mapFromItem(root, point.position))
    }
    TapHandler {
        onTapped: (eventPoint, button) => point.modifiers & Qt.ControlModifier ? root.isolationToggled() : root.toggled()
    }
    HoverHint {
        shown: hover.onWorkload || hover.hovered && root.lane.isIsolated
        text: hover.onWorkload ? root.lane.workloadHelp
                               : qsTr("This swimlane is isolated. Cmd+click to show all swimlanes.")
    }
}
