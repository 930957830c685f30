import QtQuick
import Vantrel.ViewModels

/** The board's first load has failed. */
MessageScreen {
    id: root

    required property BoardLoadingViewModel loading

    symbol: "exclamationmark.triangle"
    symbolColor: Theme.amber
    title: qsTr("Error Loading Data")
    message: loading.error
    actionText: qsTr("Retry")
    onActionTriggered: loading.retry()
}
