import QtQuick
import QtQuick.Templates as T

/** Between groups of commands. */
T.MenuSeparator {
    implicitHeight: 9
    leftPadding: 8
    rightPadding: 8

    contentItem: Item {
        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            height: 1
            color: Theme.line
        }
    }
}
