import QtQuick

/** A short text on a rounded ground: counts, states. */
Rectangle {
    id: root

    property alias text: label.text
    property alias textColor: label.color
    property alias font: label.font
    property real horizontalPadding: 8

    implicitWidth: Math.max(implicitHeight, label.implicitWidth + 2 * horizontalPadding)
    implicitHeight: label.implicitHeight + 4
    radius: height / 2
    color: Theme.cell

    ThemedText {
        id: label
        anchors.centerIn: parent
        font.pixelSize: Theme.small
    }
}
