pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** The second step of quick entry: every part of the task, for correction. */
SheetFrame {
    id: root

    required property TaskConfirmationViewModel form

    title: qsTr("Quick Add Task")
    subtitle: qsTr("Parsed from: “%1”").arg(form.parsedText)
    onConfirmed: form.createTask()
    Component.onCompleted: nameField.forceActiveFocus()

    LabeledField {
        text: qsTr("Task Name")

        AppTextField {
            id: nameField
            objectName: "taskNameField"
            width: parent?.width ?? 0
            focus: true
            text: root.form.name
            placeholderText: qsTr("Untitled task")
            Accessible.name: qsTr("Task Name")
            onTextEdited: root.form.name = text
            onAccepted: if (!inputMethodComposing) root.form.createTask()
        }
    }
    LabeledField {
        text: qsTr("Note")

        AppTextField {
            width: parent?.width ?? 0
            text: root.form.note
            Accessible.name: qsTr("Note")
            onTextEdited: root.form.note = text
            onAccepted: if (!inputMethodComposing) root.form.createTask()
        }
    }
    LabeledField {
        text: qsTr("Project")

        AutocompleteTextField {
            objectName: "projectField"
            width: parent?.width ?? 0
            symbol: "folder"
            text: root.form.project
            suggestions: root.form.projectSuggestions
            isLoading: root.form.isLoadingMetadata
            Accessible.name: qsTr("Project")
            onTextEdited: root.form.project = text
            onSuggestionChosen: suggestion => root.form.project = suggestion
            onAccepted: if (!inputMethodComposing) root.form.createTask()
        }
    }
    LabeledField {
        text: qsTr("Tag")
        note: root.form.omittedTagsText

        AutocompleteTextField {
            objectName: "tagField"
            width: parent?.width ?? 0
            symbol: "tag"
            chipPrefix: "#"
            text: root.form.tag
            suggestions: root.form.tagSuggestions
            isLoading: root.form.isLoadingMetadata
            Accessible.name: qsTr("Tag")
            onTextEdited: root.form.tag = text
            onSuggestionChosen: suggestion => root.form.tag = suggestion
            onAccepted: if (!inputMethodComposing) root.form.createTask()
        }
    }
    Row {
        width: parent?.width ?? 0
        spacing: Theme.laneGap

        LabeledField {
            width: (parent.width - parent.spacing) / 2
            text: qsTr("Due Date")

            DateField {
                objectName: "dueDateField"
                width: parent?.width ?? 0
                label: qsTr("Due Date")
                setText: qsTr("Set Due Date")
                date: root.form.dueDate
                onPicked: date => root.form.dueDate = date
                onSwitchedOn: root.form.dueDate = root.form.now()
            }
        }
        LabeledField {
            width: (parent.width - parent.spacing) / 2
            text: qsTr("Defer Date")

            DateField {
                objectName: "deferDateField"
                width: parent?.width ?? 0
                label: qsTr("Defer Date")
                setText: qsTr("Set Defer Date")
                date: root.form.deferDate
                onPicked: date => root.form.deferDate = date
                onSwitchedOn: root.form.deferDate = root.form.now()
            }
        }
    }
    LabeledField {
        text: qsTr("Task Manager")
        visible: root.form.taskSources.length > 1

        AppComboBox {
            objectName: "taskManagerPicker"
            width: parent?.width ?? 0
            label: qsTr("Task manager selection")
            model: root.form.taskSources
            currentIndex: root.form.selectedSource
            onActivated: index => root.form.selectSource(index)
        }
    }
    Row {
        width: parent?.width ?? 0
        spacing: Theme.gap
        visible: root.form.errorMessage !== ""

        SymbolImage {
            id: errorSymbol
            symbol: "exclamationmark.triangle"
            size: Theme.smallIconSize
            color: Theme.redText
        }
        ThemedText {
            objectName: "taskCreationError"
            width: parent.width - errorSymbol.width - parent.spacing
            text: root.form.errorMessage
            color: Theme.redText
            font.pixelSize: Theme.small
            wrapMode: Text.Wrap
        }
    }
    Row {
        anchors.right: parent?.right
        spacing: Theme.gap

        BusySpinner {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.form.isCreating
            size: Theme.iconSize
        }
        AppButton {
            text: qsTr("Cancel")
            enabled: !root.form.isCreating
            onClicked: root.dismissed()
        }
        AppButton {
            objectName: "createTaskButton"
            text: qsTr("Create Task")
            highlighted: true
            enabled: !root.form.isCreating
            onClicked: root.form.createTask()
        }
    }
}
