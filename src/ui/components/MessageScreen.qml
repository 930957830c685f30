pragma ComponentBehavior: Bound

import QtQuick

/** A screen that says one thing: one symbol or a spinner, a title, a line, one action. */
FocusScope {
    id: root

    property string symbol: ""
    property color symbolColor: Theme.faintText
    property bool busy: false
    property string title: ""
    property string message: ""
    property string actionText: ""
    property string actionDescription: ""
    property string accessibleName: title
    property string accessibleDescription: message
    default property alias extra: extraColumn.data
    /** Buttons beside the action. */
    property alias otherActions: otherActions.data

    signal actionTriggered
    signal actionFocused

    Accessible.role: Accessible.Grouping
    Accessible.name: accessibleName
    Accessible.description: accessibleDescription

    Flickable {
        anchors.fill: parent
        contentHeight: Math.max(height, column.implicitHeight + 60)
        boundsBehavior: Flickable.StopAtBounds
        interactive: contentHeight > height

        Column {
            id: column
            anchors.horizontalCenter: parent.horizontalCenter
            y: Math.max(30, (root.height - implicitHeight) / 2)
            width: Math.min(460, root.width - 40)
            spacing: Theme.laneGap

            SymbolImage {
                anchors.horizontalCenter: parent.horizontalCenter
                visible: root.symbol !== ""
                symbol: root.symbol
                size: 60
                color: root.symbolColor
            }
            BusySpinner {
                anchors.horizontalCenter: parent.horizontalCenter
                visible: root.busy
                size: 28
            }
            ThemedText {
                width: parent.width
                visible: root.title !== ""
                text: root.title
                font.pixelSize: Theme.huge
                font.weight: Theme.headingWeight
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
            }
            ThemedText {
                width: parent.width
                visible: root.message !== ""
                text: root.message
                color: Theme.secondaryText
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
            }
            Column {
                id: extraColumn
                width: parent.width
                spacing: 6
            }
            AppButton {
                anchors.horizontalCenter: parent.horizontalCenter
                objectName: "actionButton"
                visible: root.actionText !== ""
                text: root.actionText
                Accessible.description: root.actionDescription
                highlighted: true
                focus: true
                onClicked: root.actionTriggered()
                onActiveFocusChanged: if (activeFocus) root.actionFocused()
            }
            Flow {
                id: otherActions
                anchors.horizontalCenter: parent.horizontalCenter
                spacing: 8
            }
        }
    }
}
