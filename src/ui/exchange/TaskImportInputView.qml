import QtQuick
import Vantrel.ViewModels

/** Where a list is pasted. */
SheetFrame {
    id: root

    required property TaskImportViewModel importer

    title: qsTr("Import Tasks")
    subtitle: qsTr("Paste your tasks in markdown checkbox format")
    contentWidth: 560
    closable: true
    onDismissed: importer.close()
    onConfirmed: importer.parseInput()
    Component.onCompleted: area.focusText()

    AppTextArea {
        id: area
        objectName: "taskInputArea"
        width: parent?.width ?? 0
        height: 260
        focus: true
        text: root.importer.inputText
        label: qsTr("Task input area")
        description: qsTr("Paste your tasks here. Format: - [ ] Task name")
        onEdited: text => root.importer.inputText = text
    }
    Column {
        width: parent?.width ?? 0
        spacing: 3

        ThemedText {
            text: qsTr("Examples:")
            color: Theme.secondaryText
            font.pixelSize: Theme.small
            font.weight: Theme.headingWeight
        }
        ThemedText {
            text: qsTr("• \"- [ ] Review quarterly reports #urgent\"")
            color: Theme.secondaryText
            font.pixelSize: Theme.small
        }
        ThemedText {
            text: qsTr("• \"- [x] Call dentist #health\"")
            color: Theme.secondaryText
            font.pixelSize: Theme.small
        }
    }
    Item {
        width: parent?.width ?? 0
        height: Theme.controlHeight

        AppButton {
            objectName: "pasteButton"
            text: qsTr("Paste from Clipboard")
            onClicked: root.importer.pasteFromClipboard()
        }
        Row {
            anchors.right: parent.right
            spacing: Theme.gap

            AppButton {
                text: qsTr("Cancel")
                onClicked: root.dismissed()
            }
            AppButton {
                objectName: "previewButton"
                text: qsTr("Preview")
                highlighted: true
                enabled: root.importer.canPreview
                onClicked: root.importer.parseInput()
            }
        }
    }
}
