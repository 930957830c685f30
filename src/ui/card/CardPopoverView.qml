pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Vantrel.ViewModels

/** Beside a card, what one of its parts has to tell: the note, the source, or why the task is blocked. */
T.Popup {
    id: root

    required property CardPopover popover

    readonly property bool isBlock: popover.kind === CardPopover.BlockReason
    readonly property bool isEditing: popover.isEditing

    width: 300
    height: implicitContentHeight + 2 * padding
    padding: 14
    margins: Theme.gap
    modal: true
    dim: false
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside
    onOpened: takeFocus()
    onIsEditingChanged: takeFocus()

    function takeFocus() {
        if (isEditing)
            field.forceActiveFocus(Qt.PopupFocusReason);
        else if (isBlock)
            editButton.forceActiveFocus(Qt.PopupFocusReason);
        else
            closeButton.forceActiveFocus(Qt.PopupFocusReason);
    }

    background: Item {
        SoftShadow {
            radius: Theme.windowPartRadius
        }
        Rectangle {
            anchors.fill: parent
            radius: Theme.windowPartRadius
            color: Theme.surface
            border.width: 1
            border.color: Theme.strongLine
        }
    }
    contentItem: Column {
        spacing: 10
        Accessible.role: Accessible.Dialog
        Accessible.name: root.popover.title
        Accessible.description: root.popover.text

        Item {
            width: parent.width
            height: closeButton.height

            ThemedText {
                anchors.verticalCenter: parent.verticalCenter
                width: closeButton.x - Theme.gap
                text: root.popover.title
                font.weight: Theme.headingWeight
                elide: Text.ElideRight
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            ToolbarButton {
                id: closeButton
                objectName: "closePopover"
                anchors.right: parent.right
                implicitWidth: 24
                implicitHeight: 24
                symbol: "xmark"
                symbolSize: Theme.smallIconSize
                text: qsTr("Close")
                hint: ""
                onClicked: root.close()
            }
        }
        Flickable {
            width: parent.width
            height: Math.min(240, contentHeight)
            visible: root.popover.text !== "" && !root.isEditing
            contentHeight: body.height
            interactive: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            T.ScrollBar.vertical: AppScrollBar {}

            ThemedText {
                id: body
                objectName: "popoverText"
                width: parent.width
                text: root.popover.text
                wrapMode: Text.Wrap
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
        ThemedText {
            width: parent.width
            visible: text !== "" && !root.isEditing
            text: root.popover.hint
            color: Theme.secondaryText
            font.pixelSize: Theme.small
            wrapMode: Text.Wrap
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        Repeater {
            model: root.popover.facts

            Column {
                id: fact

                required property var modelData

                width: parent?.width ?? 0
                spacing: 2

                ThemedText {
                    text: fact.modelData.label
                    color: Theme.secondaryText
                    font.pixelSize: Theme.small
                    Accessible.ignored: true
                }
                ThemedText {
                    width: parent.width
                    text: fact.modelData.value
                    wrapMode: Text.WrapAnywhere
                    Accessible.role: Accessible.StaticText
                    Accessible.name: fact.modelData.label + ": " + text
                }
            }
        }
        AppTextField {
            id: field
            objectName: "blockReasonField"
            width: parent.width
            visible: root.isEditing
            text: root.popover.blockReason
            placeholderText: qsTr("Reason")
            Accessible.name: qsTr("Block Reason")
            onAccepted: if (!inputMethodComposing) root.popover.saveReason(text)
            Keys.onEscapePressed: root.popover.cancelEditing()
        }
        Row {
            anchors.right: parent.right
            spacing: Theme.gap
            visible: root.isBlock

            AppButton {
                objectName: "unblockButton"
                visible: !root.isEditing
                text: qsTr("Unblock Task")
                onClicked: root.popover.unblock()
            }
            AppButton {
                id: editButton
                objectName: "editReasonButton"
                visible: !root.isEditing
                text: qsTr("Edit")
                highlighted: true
                onClicked: root.popover.edit()
            }
            AppButton {
                visible: root.isEditing
                text: qsTr("Cancel")
                onClicked: root.popover.cancelEditing()
            }
            AppButton {
                objectName: "saveReasonButton"
                visible: root.isEditing
                text: qsTr("Save")
                highlighted: true
                onClicked: root.popover.saveReason(field.text)
            }
        }
    }
    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.quick }
    }
}
