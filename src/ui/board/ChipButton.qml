import QtQuick
import QtQuick.Templates as T

/** A small button that stands for something that is in force; pressing it ends that. */
T.AbstractButton {
    id: root

    property string symbol: ""
    property string hint: ""
    property bool closable: false

    implicitWidth: row.implicitWidth + 20
    implicitHeight: 26
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: hint
    Accessible.onPressAction: root.clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    contentItem: Item {
        Row {
            id: row
            anchors.centerIn: parent
            spacing: 6

            SymbolImage {
                anchors.verticalCenter: parent.verticalCenter
                visible: root.symbol !== ""
                symbol: root.symbol
                size: 16
                color: Theme.accentText
            }
            ThemedText {
                anchors.verticalCenter: parent.verticalCenter
                text: root.text
                font.pixelSize: Theme.small
                font.weight: Theme.titleWeight
                color: Theme.accentText
            }
            SymbolImage {
                anchors.verticalCenter: parent.verticalCenter
                visible: root.closable
                symbol: "xmark"
                size: 12
                color: Theme.accentText
            }
        }
    }
    background: Rectangle {
        radius: height / 2
        color: root.down ? Theme.press : root.hovered ? Theme.hover : Theme.accentTint
        FocusRing {
            active: root.visualFocus
            radius: parent.height / 2 + 3
        }
    }

    HoverHint {
        shown: root.hovered
        text: root.hint
    }
}
