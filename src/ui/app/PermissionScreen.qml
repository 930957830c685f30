pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** A source may not be read until the user allows it. */
MessageScreen {
    id: root

    required property TaskListViewModel taskList
    required property PermissionHelp help
    required property RemindersFolderModel remindersFolder

    symbol: "lock.shield"
    title: qsTr("Permission Required")
    message: qsTr("Vantrel needs permission to read and change your tasks.")
    accessibleName: qsTr("Permission required")
    actionText: qsTr("Try Again")
    actionDescription: qsTr("Attempts to load your tasks again")
    onActionTriggered: taskList.retry()
    onActionFocused: taskList.announceFocusOnRetry()
    otherActions: [
        AppButton {
            objectName: "chooseFolderButton"
            visible: root.remindersFolder.offered
            text: qsTr("Choose Folder...")
            symbol: "folder"
            Accessible.description: qsTr("Opens a dialog to choose the folder of your task lists")
            onClicked: root.chooseFolder()
        },
        AppButton {
            objectName: "triggerButton"
            visible: root.help.grantedInSettings
            text: qsTr("Trigger Permission Dialog")
            Accessible.description: qsTr("Asks the system for the permission")
            onClicked: root.help.triggerPermissionDialog()
        },
        AppButton {
            objectName: "settingsButton"
            visible: root.help.grantedInSettings
            text: qsTr("Open System Settings")
            Accessible.description: qsTr("Opens the place where the permission is given")
            onClicked: root.help.openSystemSettings(root.taskList.permissionMessage)
        },
        AppButton {
            objectName: "continueButton"
            text: qsTr("Continue Without")
            Accessible.description: qsTr("Shows the board without the tasks that may not be read")
            onClicked: root.taskList.continueWithout()
        }
    ]

    property var folderDialog: null

    /** The dialog is heavy, and hardly ever seen: it is made here. */
    function chooseFolder() {
        if (!folderDialog) {
            folderDialog = Qt.createComponent("RemindersFolderDialog.qml").createObject(root);
            folderDialog.accepted.connect(() => remindersFolder.choose(folderDialog.selectedFolder));
        }
        folderDialog.currentFolder = remindersFolder.startFolder;
        folderDialog.open();
    }

    ThemedText {
        visible: steps.count > 0
        text: qsTr("To grant permission:")
        font.weight: Theme.headingWeight
        Accessible.name: qsTr("Steps to grant permission")
        Accessible.description: qsTr("Follow these steps in System Settings")
    }
    Repeater {
        id: steps
        model: root.help.steps

        ThemedText {
            required property string modelData

            text: modelData
            color: Theme.secondaryText
        }
    }
    ThemedText {
        width: parent?.width ?? 0
        topPadding: 8
        visible: root.taskList.permissionMessage !== ""
        text: qsTr("Status: %1").arg(root.taskList.permissionMessage)
        wrapMode: Text.Wrap
    }
    Repeater {
        model: root.help.remindersGuidance(root.taskList.permissionMessage)

        ThemedText {
            required property string modelData

            width: parent?.width ?? 0
            text: modelData
            color: Theme.secondaryText
            wrapMode: Text.Wrap
        }
    }
}
