import QtQuick

/** How far something has got. Never runs backwards while it is shown. */
Rectangle {
    id: root

    required property real value
    property real shown: 0

    onValueChanged: shown = Math.max(shown, value)
    onVisibleChanged: if (visible) shown = value
    Component.onCompleted: shown = value

    implicitWidth: 200
    implicitHeight: 4
    radius: height / 2
    color: Theme.line
    Accessible.role: Accessible.ProgressBar
    Accessible.name: qsTr("Progress")
    Accessible.description: Math.round(shown * 100) + "%"

    Rectangle {
        width: parent.width * Math.min(1, root.shown)
        height: parent.height
        radius: height / 2
        color: Theme.accent

        Behavior on width {
            NumberAnimation { duration: Theme.move; easing.type: Easing.OutCubic }
        }
    }
}
