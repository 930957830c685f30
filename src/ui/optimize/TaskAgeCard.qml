import QtQuick
import Vantrel.ViewModels

/** One task of the age grid; its height and the colour of its edge tell its age, and so do words. */
Rectangle {
    id: root

    required property ageCard card
    property bool isSelected: false
    property bool showsFocus: false

    signal tapped

    objectName: "ageCard-" + card.id
    height: card.height
    radius: Theme.cardRadius
    color: hover.hovered ? Theme.cardHover : Theme.card
    border.width: isSelected ? Theme.ringWidth : 1
    border.color: isSelected ? Theme.accent : Theme.ageZones[card.zone] ?? Theme.line
    Accessible.role: Accessible.ListItem
    Accessible.name: card.accessibleName
    Accessible.description: qsTr("Double tap to select this task") + ". " + card.sourceText
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.onPressAction: root.tapped()

    ThemedText {
        id: title
        x: Theme.cardPadding
        y: Theme.cardPadding
        width: root.width - 2 * x
        text: root.card.title
        font.weight: Theme.titleWeight
        wrapMode: Text.Wrap
        maximumLineCount: Math.max(2, Math.floor((root.height - 52) / 17))
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    SymbolImage {
        id: icon
        x: Theme.cardPadding
        y: title.y + title.height + 7
        symbol: root.card.sourceIcon
        size: Theme.smallIconSize
        color: Theme.faintText
    }
    ThemedText {
        anchors.right: parent.right
        anchors.rightMargin: Theme.cardPadding
        anchors.verticalCenter: icon.verticalCenter
        text: root.card.ageText
        font.pixelSize: Theme.small
        color: Theme.secondaryText
        Accessible.ignored: true
    }
    FocusRing {
        radius: root.radius + 3
        active: root.showsFocus
    }
    HoverHandler {
        id: hover
    }
    TapHandler {
        onTapped: root.tapped()
    }
    HoverHint {
        shown: hover.hovered && title.truncated
        text: root.card.title
    }
}
