import QtQuick
import Vantrel.ViewModels

/** Names a column and counts what is in it. */
Item {
    id: root

    required property columnContent column
    property real zoom: 1

    readonly property color ink: column.color !== "" ? column.color
                               : column.isCompleted ? Theme.green
                               : column.isActive ? Theme.accent : Theme.secondaryText

    objectName: "column-header-" + column.id
    Accessible.role: Accessible.ColumnHeader
    Accessible.name: column.accessibleName
    Accessible.description: column.help

    SymbolImage {
        id: icon
        x: Theme.cardPadding * root.zoom
        anchors.verticalCenter: parent.verticalCenter
        symbol: root.column.symbol
        size: Theme.iconSize * root.zoom
        color: root.ink
    }
    ThemedText {
        anchors.left: icon.right
        anchors.leftMargin: 6 * root.zoom
        anchors.right: count.left
        anchors.rightMargin: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        text: root.column.name
        font.pixelSize: Theme.body * root.zoom
        font.weight: Theme.headingWeight
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    Pill {
        id: count
        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding * root.zoom
        anchors.verticalCenter: parent.verticalCenter
        text: root.column.countText
        font.pixelSize: Theme.small * root.zoom
        font.weight: root.column.isOverLimit ? Theme.headingWeight : Theme.regularWeight
        textColor: root.column.isOverLimit ? Theme.redText : Theme.secondaryText
        color: root.column.isOverLimit ? Theme.redTint : Theme.rail
        border.width: root.column.isOverLimit ? 0 : 1
        border.color: Theme.line
    }
    HoverHandler {
        id: hover
    }
    HoverHint {
        shown: hover.hovered
        text: root.column.help
    }
}
