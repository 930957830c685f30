import QtQuick

/** Tells where the keyboard is: an outline around its parent while `active`. */
Rectangle {
    id: root

    property bool active: false

    anchors.fill: parent
    anchors.margins: -3
    z: 10
    visible: active
    radius: Theme.controlRadius + 3
    color: "transparent"
    border.width: Theme.ringWidth
    border.color: Theme.accent
}
