import QtQuick
import QtQuick.Templates as T

/** A square button of the toolbar: one symbol, a hint, a name for the screen reader. */
T.AbstractButton {
    id: root

    required property string symbol
    property string hint: text
    property bool active: false
    property real symbolSize: Theme.iconSize
    property color ink: active ? Theme.accent : Theme.secondaryText

    implicitWidth: Theme.toolButtonSize
    implicitHeight: Theme.toolButtonSize
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: root.clicked()
    Keys.onReturnPressed: root.clicked()
    Keys.onEnterPressed: root.clicked()

    contentItem: Item {
        SymbolImage {
            anchors.centerIn: parent
            symbol: root.symbol
            size: root.symbolSize
            color: root.ink
        }
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: root.down ? Theme.press : root.hovered || root.active ? Theme.hover : "transparent"

        Behavior on color {
            ColorAnimation { duration: Theme.quick }
        }
        FocusRing { active: root.visualFocus }
    }

    HoverHint {
        shown: root.hovered
        text: root.hint
    }
}
