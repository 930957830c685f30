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
    actionText: qsTr("Retry")
    onActionTriggered: taskList.retry()
    onActionFocused: taskList.announceFocusOnRetry()
}
