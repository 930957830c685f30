pragma ComponentBehavior: Bound

import QtQuick

/**
 * The shadow of something that lies above the window, painted: translucent shapes, each larger than the last by a little
 * more, so that it fades out instead of ending.
 */
Item {
    id: root

    required property real radius
    /** How far it reaches, in points. */
    property real depth: 16

    readonly property int layers: 9

    anchors.fill: parent

    Repeater {
        model: root.layers

        Rectangle {
            required property int index

            readonly property real reach: root.depth * Math.pow((index + 1) / root.layers, 2)

            anchors.fill: parent
            anchors.margins: -reach
            anchors.topMargin: -reach / 2
            anchors.bottomMargin: -reach * 1.4
            radius: root.radius + reach
            color: Theme.softShadow
        }
    }
}
