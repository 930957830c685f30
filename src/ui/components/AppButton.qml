import QtQuick
import QtQuick.Templates as T

/** A button with a text and perhaps a symbol; `highlighted` is the one that Return means. */
T.Button {
    id: root

    property string symbol: ""

    implicitWidth: Math.max(72, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Theme.controlHeight
    leftPadding: 14
    rightPadding: 14
    spacing: 6
    hoverEnabled: true
    opacity: enabled ? 1 : 0.45
    Accessible.name: text
    Accessible.onPressAction: root.clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    readonly property color inkColor: highlighted ? Theme.inkOnAccent : Theme.text

    contentItem: Item {
        implicitWidth: row.implicitWidth
        implicitHeight: row.implicitHeight

        Row {
            id: row
            anchors.centerIn: parent
            spacing: root.spacing

            SymbolImage {
                anchors.verticalCenter: parent.verticalCenter
                visible: root.symbol !== ""
                symbol: root.symbol
                size: 16
                color: root.inkColor
            }
            ThemedText {
                anchors.verticalCenter: parent.verticalCenter
                text: root.text
                font.weight: Theme.titleWeight
                color: root.inkColor
            }
        }
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: root.highlighted ? (root.down ? Qt.darker(Theme.accent, 1.15) : Theme.accent)
                                : (root.down ? Theme.press : root.hovered ? Theme.hover : Theme.surface)
        border.width: root.highlighted ? 0 : 1
        border.color: Theme.strongLine

        Behavior on color {
            ColorAnimation { duration: Theme.quick }
        }
        FocusRing { active: root.visualFocus }
    }
}
