import QtQuick
import QtQuick.Templates as T

/** One command of a menu with its key at the right, or the way into a menu within. */
T.MenuItem {
    id: root

    property string keys: ""
    property string symbol: (subMenu as AppMenu)?.symbol ?? ""

    readonly property real textInset: (menu as AppMenu)?.hasSymbols ?? true ? 26 : Theme.unit

    implicitWidth: leftPadding + textInset + label.implicitWidth + rightPadding
                   + (keysLabel.implicitWidth > 0 ? keysLabel.implicitWidth + 28 : 0)
    implicitHeight: visible ? Theme.menuItemHeight : 0
    leftPadding: 8
    rightPadding: 10
    hoverEnabled: true
    Accessible.name: keys === "" ? text : text + ", " + keys
    Accessible.onPressAction: {
        root.menu?.dismiss();
        root.triggered();
    }

    contentItem: Item {
        opacity: root.enabled ? 1 : 0.45

        SymbolImage {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.symbol !== "" || root.checked
            symbol: root.checked ? "checkmark" : root.symbol
            size: 16
            color: Theme.secondaryText
        }
        ThemedText {
            id: label
            x: root.textInset
            anchors.verticalCenter: parent.verticalCenter
            width: keysLabel.x - x - 16
            text: root.text
            elide: Text.ElideRight
        }
        ThemedText {
            id: keysLabel
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: root.keys
            font.pixelSize: Theme.small
            color: Theme.faintText
        }
        SymbolImage {
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: root.subMenu !== null
            symbol: "chevron.right"
            size: Theme.smallIconSize
            color: Theme.faintText
        }
    }
    background: Rectangle {
        radius: Theme.chipRadius
        color: root.highlighted ? Theme.hover : "transparent"
    }
}
