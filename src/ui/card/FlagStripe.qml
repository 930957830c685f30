import QtQuick

/** The stripe at the left edge of a flagged card, rounded with the card. */
Item {
    id: root

    required property real radius
    required property color ground
    required property real inset

    Rectangle {
        width: 2 * root.radius
        height: parent.height
        radius: root.radius
        color: Theme.flagStripe
    }
    Rectangle {
        x: 3
        y: root.inset
        width: 2 * root.radius
        height: parent.height - 2 * root.inset
        radius: root.radius - 1
        color: root.ground
    }
    Rectangle {
        x: root.radius
        y: root.inset
        width: root.radius + 4
        height: parent.height - 2 * root.inset
        color: root.ground
    }
}
