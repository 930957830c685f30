pragma ComponentBehavior: Bound

import QtQuick

/** Says that something is going on whose end is not known. Stands still where less motion is wished. */
Item {
    id: root

    property real size: 22
    property color color: Theme.accent

    implicitWidth: size
    implicitHeight: size
    Accessible.role: Accessible.Animation
    Accessible.name: qsTr("Busy")

    Repeater {
        model: 8

        Rectangle {
            id: spoke
            required property int index

            width: root.size / 9
            height: root.size / 3.6
            radius: width / 2
            color: root.color
            opacity: 0.25 + 0.75 * spoke.index / 7
            x: root.size / 2 - width / 2
            transform: Rotation {
                origin.x: root.size / 18
                origin.y: root.size / 2
                angle: 45 * spoke.index
            }
        }
    }
    RotationAnimator on rotation {
        running: root.visible && !Theme.reducedMotion
        from: 0
        to: 360
        duration: 900
        loops: Animation.Infinite
    }
}
