import QtQuick

/** The reference of the first frame. */
Window {
    width: 1280
    height: 820
    visible: true

    Rectangle {
        anchors.fill: parent
        color: "#F5F6F8"
    }
}
