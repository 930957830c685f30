pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** Adds tasks one line at a time; the sheet stays for the next one. */
SheetFrame {
    id: root

    required property QuickAddViewModel quickAdd

    title: qsTr("Quick Add Task")
    onDismissed: quickAdd.close()
    Component.onCompleted: field.forceActiveFocus()

    AppTextField {
        id: field
        objectName: "quickAddField"
        width: parent?.width ?? 0
        focus: true
        placeholderText: qsTr("New task")
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
        spacing: Theme.gap
        visible: root.quickAdd.errorMessage !== ""

        SymbolImage {
            id: errorSymbol
            symbol: "exclamationmark.triangle"
            size: Theme.smallIconSize
            color: Theme.redText
        }
        ThemedText {
            objectName: "quickAddError"
            width: parent.width - errorSymbol.width - parent.spacing
            text: root.quickAdd.errorMessage
            color: Theme.redText
            font.pixelSize: Theme.small
            wrapMode: Text.Wrap
        }
    }
    Column {
        width: parent?.width ?? 0
        spacing: Theme.unit
        visible: failed.count > 0

        ThemedText {
            text: qsTr("Not added:")
            color: Theme.secondaryText
            font.pixelSize: Theme.small
        }
        Repeater {
            id: failed
            model: root.quickAdd.failedLines

            ThemedText {
                required property string modelData

                width: parent?.width ?? 0
                text: modelData
                elide: Text.ElideRight
            }
        }
        AppButton {
            text: qsTr("Try Again")
            onClicked: {
                root.quickAdd.retry();
                field.forceActiveFocus();
            }
        }
    }
    Item {
        width: parent?.width ?? 0
        height: Theme.controlHeight

        ThemedText {
            anchors.left: parent.left
            anchors.right: buttons.left
            anchors.rightMargin: Theme.laneGap
            anchors.verticalCenter: parent.verticalCenter
            text: root.quickAdd.lastAdded === "" ? qsTr("Return adds the task, Escape closes")
                                                 : qsTr("Added “%1”").arg(root.quickAdd.lastAdded)
            color: root.quickAdd.lastAdded === "" ? Theme.faintText : Theme.greenText
            font.pixelSize: Theme.small
            elide: Text.ElideRight
        }
        Row {
            id: buttons
            anchors.right: parent.right
            spacing: Theme.gap

            AppButton {
                text: qsTr("Close")
                onClicked: root.quickAdd.close()
            }
            AppButton {
                objectName: "quickAddButton"
                text: qsTr("Create Task")
                highlighted: true
                enabled: field.text.trim() !== ""
                onClicked: {
                    root.quickAdd.submit();
                    field.forceActiveFocus();
                }
            }
        }
    }
}
