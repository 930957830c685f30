import QtQuick
import Vantrel.ViewModels

/** What a board without a single task says: how the first one is made. */
Column {
    id: root

    required property Command addCommand

    spacing: Theme.laneGap

    SymbolImage {
        anchors.horizontalCenter: parent.horizontalCenter
        symbol: "tray"
        size: 32
        color: Theme.faintText
    }
    ThemedText {
        anchors.horizontalCenter: parent.horizontalCenter
        text: qsTr("No tasks yet. Press %1 and type the first one.").arg(root.addCommand.keys)
        color: Theme.secondaryText
    }
    AppButton {
        objectName: "addFirstTask"
        anchors.horizontalCenter: parent.horizontalCenter
        text: root.addCommand.title
        symbol: root.addCommand.symbol
        highlighted: true
        onClicked: root.addCommand.trigger()
    }
}
