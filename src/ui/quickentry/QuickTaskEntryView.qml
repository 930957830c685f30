pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** The first step of quick entry: one line in the user's own words. */
SheetFrame {
    id: root

    required property QuickTaskEntryViewModel quickEntry

    title: qsTr("Quick Add Task")
    onDismissed: quickEntry.close()
    onConfirmed: quickEntry.parseAndContinue()
    Component.onCompleted: {
        field.forceActiveFocus();
        field.selectAll();
    }

    AppTextField {
        id: field
        objectName: "taskInputField"
        width: parent?.width ?? 0
        focus: true
        placeholderText: qsTr("Write report by friday [Website Redesign] #code")
        text: root.quickEntry.inputText
        Accessible.name: qsTr("Task input field")
        Accessible.description: qsTr("Enter your task description. You can include due dates, tags, and project names.")
        onTextEdited: root.quickEntry.inputText = text
        // An input method that is still composing takes Return for itself.
        onAccepted: if (!inputMethodComposing) root.quickEntry.parseAndContinue()
    }
    Item {
        width: parent?.width ?? 0
        height: Theme.controlHeight

        ThemedText {
            anchors.left: parent.left
            anchors.right: buttons.left
            anchors.rightMargin: Theme.laneGap
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("A date, [a project] and #a tag are understood")
            color: Theme.faintText
            font.pixelSize: Theme.small
            elide: Text.ElideRight
        }
        Row {
            id: buttons
            anchors.right: parent.right
            spacing: Theme.gap

            AppButton {
                text: qsTr("Cancel")
                Accessible.description: qsTr("Cancel task creation")
                onClicked: root.quickEntry.close()
            }
            AppButton {
                objectName: "continueButton"
                text: qsTr("Continue")
                Accessible.description: qsTr("Parse task and continue to confirmation")
                highlighted: true
                enabled: root.quickEntry.inputText.trim() !== ""
                onClicked: root.quickEntry.parseAndContinue()
            }
        }
    }
}
