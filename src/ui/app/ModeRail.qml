pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Vantrel.ViewModels

/** The screens that can be switched to. */
FocusScope {
    id: root

    required property TaskListViewModel taskList

    Accessible.role: Accessible.PageTabList
    Accessible.name: qsTr("Views")

    Rectangle {
        anchors.fill: parent
        color: Theme.rail

        Rectangle {
            anchors.right: parent.right
            width: 1
            height: parent.height
            color: Theme.line
        }
    }

    Column {
        x: 8
        y: 10
        width: parent.width - 16
        spacing: 4

        Repeater {
            model: root.taskList.viewModes

            T.TabButton {
                id: button

                required property var modelData
                required property int index

                readonly property bool selected: root.taskList.viewMode === modelData.id
                readonly property color inkColor: selected ? Theme.accentText : Theme.secondaryText

                width: parent?.width ?? 0
                height: 52
                focus: index === 0
                checkable: false
                hoverEnabled: true
                text: modelData.label
                Accessible.name: text
                Accessible.description: modelData.help
                Accessible.selectable: true
                Accessible.selected: selected
                Accessible.onPressAction: button.clicked()
                onClicked: root.taskList.switchToViewMode(modelData.id)

                contentItem: Item {
                    SymbolImage {
                        anchors.horizontalCenter: parent.horizontalCenter
                        y: 9
                        symbol: button.modelData.symbol
                        color: button.inkColor
                    }
                    ThemedText {
                        anchors.horizontalCenter: parent.horizontalCenter
                        y: 30
                        text: button.text
                        font.pixelSize: Theme.tiny
                        font.weight: button.selected ? Theme.headingWeight : Theme.regularWeight
                        color: button.inkColor
                    }
                }
                background: Rectangle {
                    radius: Theme.controlRadius
                    color: button.selected ? Theme.surface : button.hovered ? Theme.hover : "transparent"
                    FocusRing { active: button.visualFocus }
                }
                HoverHint {
                    shown: button.hovered
                    text: button.modelData.help
                }
            }
        }
    }
}
