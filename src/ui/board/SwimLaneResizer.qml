import QtQuick

/** The strip at a swimlane's lower edge that sets its height. Heights are in points at zoom 1. */
Item {
    id: root

    required property real laneHeight
    required property string heightText
    property real zoom: 1

    readonly property real step: 25

    /** While the strip is dragged, and at its release. */
    signal heightMoved(height: real)
    signal heightChosen(height: real)

    implicitHeight: 10
    Accessible.role: Accessible.Slider
    Accessible.name: qsTr("Swimlane height resizer")
    Accessible.description: heightText + ". " + qsTr("Drag up or down to resize the swimlane height")
    Accessible.onIncreaseAction: root.heightChosen(root.laneHeight + root.step)
    Accessible.onDecreaseAction: root.heightChosen(root.laneHeight - root.step)

    HoverHandler {
        id: hover
        cursorShape: Qt.SizeVerCursor
    }
    DragHandler {
        id: drag
        property real before: 0

        target: null
        xAxis.enabled: false
        grabPermissions: PointerHandler.CanTakeOverFromAnything
        onActiveChanged: {
            if (active)
                before = root.laneHeight;
            else
                root.heightChosen(before + activeTranslation.y / root.zoom);
        }
        onActiveTranslationChanged: if (active) root.heightMoved(before + activeTranslation.y / root.zoom)
    }
    SymbolImage {
        anchors.centerIn: parent
        symbol: "line.3.horizontal"
        size: 14
        color: Theme.faintText
        opacity: hover.hovered || drag.active ? 1 : 0

        Behavior on opacity {
            NumberAnimation { duration: Theme.quick }
        }
    }
}
