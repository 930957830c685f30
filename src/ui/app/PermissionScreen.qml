pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** A source may not be read until the user allows it. */
MessageScreen {
    id: root

    required property TaskListViewModel taskList

    symbol: "lock.shield"
    title: qsTr("Permission Required")
    message: qsTr("Vantrel needs permission to read and change your tasks.")
    actionText: qsTr("Try Again")
    onActionTriggered: taskList.retry()
    onActionFocused: taskList.announceFocusOnRetry()

    ThemedText {
        text: qsTr("To grant permission:")
        font.weight: Theme.headingWeight
    }
    Repeater {
        model: [qsTr("1. Open System Settings"), qsTr("2. Go to Privacy & Security"),
                qsTr("3. Select Automation or Reminders"), qsTr("4. Enable access for Vantrel")]

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
        model: root.taskList.remindersGuidance

        ThemedText {
            required property string modelData

            width: parent?.width ?? 0
            text: modelData
            color: Theme.secondaryText
            wrapMode: Text.Wrap
        }
    }
}
