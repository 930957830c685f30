import QtQuick
import Vantrel.ViewModels

/** Adds tasks one line at a time; the sheet stays for the next one. */
SheetFrame {
    id: root

    required property QuickAddViewModel quickAdd

    title: qsTr("Quick Add Task")
    contentWidth: 500
    onDismissed: quickAdd.close()
    Component.onCompleted: field.forceActiveFocus()

    AppTextField {
        id: field
        objectName: "quickAddField"
        width: parent?.width ?? 0
        focus: true
        placeholderText: qsTr("What needs to be done?")
        text: root.quickAdd.text
        Accessible.name: qsTr("Task input field")
        Accessible.description: qsTr("Enter your task description.")
        onTextEdited: root.quickAdd.text = text
        // An input method that is still composing takes Return for itself.
        onAccepted: if (!inputMethodComposing) root.quickAdd.submit()

        Connections {
            target: root.quickAdd
            function onTextChanged() {
                field.text = root.quickAdd.text;
            }
        }
    }
    Row {
        width: parent?.width ?? 0
        spacing: 6
        visible: root.quickAdd.errorMessage !== ""

        SymbolImage {
            symbol: "exclamationmark.triangle"
            size: 16
            color: Theme.red
        }
        ThemedText {
            width: parent.width - 22
            text: root.quickAdd.errorMessage
            color: Theme.red
            wrapMode: Text.Wrap
        }
    }
    Item {
        width: parent?.width ?? 0
        height: Theme.controlHeight

        ThemedText {
            anchors.left: parent.left
            anchors.right: buttons.left
            anchors.rightMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            text: root.quickAdd.lastAdded === "" ? qsTr("Return adds the task, Escape closes")
                                                 : qsTr("Added “%1”").arg(root.quickAdd.lastAdded)
            color: root.quickAdd.lastAdded === "" ? Theme.faintText : Theme.green
            font.pixelSize: Theme.small
            elide: Text.ElideRight
        }
        Row {
            id: buttons
            anchors.right: parent.right
            spacing: 8

            AppButton {
                text: qsTr("Close")
                onClicked: root.quickAdd.close()
            }
            AppButton {
                objectName: "quickAddButton"
                text: qsTr("Create Task")
                highlighted: true
                enabled: field.text.trim() !== "" && !root.quickAdd.creating
                onClicked: {
                    root.quickAdd.submit();
                    field.forceActiveFocus();
                }
            }
        }
    }
}
