import QtQuick

/** The ground of what lies above the window for a moment. */
Item {
    SoftShadow {
        radius: frame.radius
    }
    Rectangle {
        id: frame
        anchors.fill: parent
        radius: Theme.cardRadius
        color: Theme.surface
        border.width: 1
        border.color: Theme.line
    }
}
