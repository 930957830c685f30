import QtQuick
import QtQuick.Templates as T

/** A hint that appears beside the pointer after a moment. */
T.ToolTip {
    id: root

    delay: 500
    timeout: 6000
    x: parent ? (parent.width - implicitWidth) / 2 : 0
    y: parent ? parent.height + 6 : 0
    margins: 6
    padding: 6
    leftPadding: 9
    rightPadding: 9
    implicitWidth: Math.min(360, contentWidth + leftPadding + rightPadding)
    implicitHeight: contentHeight + topPadding + bottomPadding
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent

    contentItem: ThemedText {
        text: root.text
        font.pixelSize: Theme.small
        wrapMode: Text.Wrap
        color: Theme.inkOnNote
    }
    background: Rectangle {
        radius: Theme.chipRadius
        color: Theme.note
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.quick }
    }
}
