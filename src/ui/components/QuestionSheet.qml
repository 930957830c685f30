import QtQuick

/** Asks before something that cannot be undone. Return, like Escape, means no. */
SheetFrame {
    id: root

    property string message: ""
    /** The word on the button that says yes. */
    required property string answer

    signal agreed

    contentWidth: 340
    subtitle: message
    Component.onCompleted: cancelButton.forceActiveFocus()

    Row {
        anchors.right: parent?.right
        spacing: Theme.gap

        AppButton {
            objectName: "agreeButton"
            text: root.answer
            onClicked: root.agreed()
        }
        AppButton {
            id: cancelButton
            objectName: "cancelButton"
            text: qsTr("Cancel")
            highlighted: true
            focus: true
            onClicked: root.dismissed()
        }
    }
}
