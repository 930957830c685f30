import QtQuick

/** Says one thing and waits until it is seen. */
SheetFrame {
    id: root

    property string message: ""

    contentWidth: 340
    subtitle: message
    Component.onCompleted: button.forceActiveFocus()

    AppButton {
        id: button
        objectName: "noticeButton"
        anchors.right: parent?.right
        text: qsTr("OK")
        highlighted: true
        focus: true
        onClicked: root.dismissed()
    }
}
