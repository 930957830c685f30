import QtQuick
import Vantrel.ViewModels

/** A refresh has failed. */
MessageScreen {
    id: root

    required property TaskListViewModel taskList

    symbol: "exclamationmark.triangle"
    symbolColor: Theme.amber
    title: qsTr("Something went wrong")
    message: taskList.errorMessage
    accessibleName: qsTr("Error")
    accessibleDescription: qsTr("An error occurred while loading tasks")
    actionText: qsTr("Retry")
    onActionTriggered: taskList.retry()
    onActionFocused: taskList.announceFocusOnRetry()
}
