import QtQuick
import QtQuick.Templates as T

/** One command of a menu, with its key at the right. */
T.MenuItem {
    id: root

    property string keys: ""
    property string symbol: ""

    implicitWidth: leftPadding + 26 + label.implicitWidth + (keys === "" ? 0 : 28 + keysLabel.implicitWidth) + rightPadding
    implicitHeight: visible ? 30 : 0
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
            x: 26
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
    }
    background: Rectangle {
        radius: Theme.chipRadius
        color: root.highlighted ? Theme.hover : "transparent"
    }
}
