pragma ComponentBehavior: Bound

import QtQuick

/** The shadow of something that lies above the window, painted: a few translucent shapes, each a little larger. */
Item {
    id: root

    required property real radius
    /** How far it reaches, in points. */
    property real depth: 10

    readonly property int layers: 5

    anchors.fill: parent

    Repeater {
        model: root.layers

        Rectangle {
            required property int index

            readonly property real reach: root.depth * (index + 1) / root.layers

            anchors.fill: parent
            anchors.margins: -reach
            anchors.topMargin: -reach / 2
            anchors.bottomMargin: -reach * 1.4
            radius: root.radius + reach
            color: Theme.softShadow
        }
    }
}
