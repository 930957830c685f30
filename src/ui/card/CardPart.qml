import QtQuick
import Vantrel.ViewModels

/** One part of a card's metadata: a symbol, a text, or both, on a tinted ground if it has one. */
Rectangle {
    id: root

    property real zoom: 1
    property string symbol: ""
    property string text: ""
    property int tone: CardTone.Plain
    property int kind: KanbanCardFocus.None
    property bool bold: false
    /** What the pointer is told when it rests here. */
    property string tip: ""
    property real maximumWidth: 1000

    readonly property bool isChip: tone >= CardTone.Tag
    readonly property color ink: {
        switch (tone) {
        case CardTone.Plain: return Theme.secondaryText;
        case CardTone.Flag: return Theme.flagStripe;
        case CardTone.Alarm:
        case CardTone.Overdue: return Theme.redText;
        case CardTone.Aging:
        case CardTone.Soon: return Theme.amberText;
        case CardTone.Tag: return Theme.violetText;
        case CardTone.Later: return Theme.greenText;
        default: return Theme.faintText;
        }
    }
    readonly property real padding: isChip ? 6 * zoom : 0
    readonly property real textX: padding + (symbol === "" ? 0 : icon.width + (text === "" ? 0 : 4 * zoom))

    implicitWidth: textX + (label.text === "" ? 0 : label.width) + padding
    implicitHeight: 19 * zoom
    radius: Theme.chipRadius * zoom
    color: {
        switch (tone) {
        case CardTone.Tag: return Theme.violetTint;
        case CardTone.Overdue: return Theme.redTint;
        case CardTone.Soon: return Theme.amberTint;
        case CardTone.Later: return Theme.greenTint;
        case CardTone.Done: return Theme.cell;
        default: return "transparent";
        }
    }

    SymbolImage {
        id: icon
        x: root.padding
        anchors.verticalCenter: parent.verticalCenter
        visible: root.symbol !== ""
        symbol: root.symbol
        size: Theme.smallIconSize * root.zoom
        color: root.ink
    }
    ThemedText {
        id: label
        x: root.textX
        width: Math.min(implicitWidth, root.maximumWidth - x - root.padding)
        anchors.verticalCenter: parent.verticalCenter
        visible: text !== ""
        text: root.text
        color: root.ink
        font.pixelSize: Theme.small * root.zoom
        font.weight: root.bold ? Theme.headingWeight : Theme.regularWeight
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
