import QtQuick
import QtQuick.Templates as T

/** A thin bar that shows itself while it is of use. */
T.ScrollBar {
    id: root

    implicitWidth: isUpright ? 10 : 40
    implicitHeight: isUpright ? 40 : 10
    padding: 2
    minimumSize: 0.06
    hoverEnabled: true
    visible: policy !== T.ScrollBar.AlwaysOff && size < 1.0
    Accessible.ignored: true

    readonly property bool isUpright: orientation === Qt.Vertical

    contentItem: Rectangle {
        implicitWidth: 6
        implicitHeight: 6
        radius: 3
        color: root.pressed || root.hovered ? Theme.faintText : Theme.strongLine
        opacity: root.active || root.hovered ? 1 : 0

        Behavior on opacity {
            NumberAnimation { duration: Theme.move }
        }
    }
}
