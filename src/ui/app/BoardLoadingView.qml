import QtQuick
import Vantrel.ViewModels

/** What stands in the window until the tasks have their places. */
MessageScreen {
    id: root

    required property BoardLoadingViewModel loading

    symbol: "square.grid.3x3.square"
    busy: loading.progress <= 0
    title: qsTr("Loading Vantrel")

    ProgressLine {
        anchors.horizontalCenter: parent?.horizontalCenter
        visible: root.loading.progress > 0
        value: root.loading.progress
    }
    ThemedText {
        width: parent?.width ?? 0
        visible: root.loading.progress > 0
        text: root.loading.percentage
        font.pixelSize: Theme.small
        color: Theme.secondaryText
        horizontalAlignment: Text.AlignHCenter
    }
    ThemedText {
        width: parent?.width ?? 0
        text: root.loading.statusMessage
        color: Theme.secondaryText
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
    }
}
