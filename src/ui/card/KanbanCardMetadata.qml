pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** The last rows of a card: what the task is, in symbols and chips, and its age at the right end. */
Item {
    id: root

    required property cardContent card
    property real zoom: 1

    readonly property real gap: 6 * zoom
    readonly property Item last: parts.count > 0 ? parts.itemAt(parts.count - 1) : null
    readonly property bool ageFits: last !== null && last.x + last.width + gap + age.width <= width

    implicitHeight: ageFits ? flow.height : flow.height + gap / 2 + age.height

    /** The item of a part, or null if that is not here. */
    function partFor(component: int): Item {
        if (component === KanbanCardFocus.Age)
            return age;
        for (let i = 0; i < parts.count; ++i) {
            const part = parts.itemAt(i) as CardPart;
            if (part?.kind === component)
                return part;
        }
        return null;
    }

    /** Which part at this point has more to tell, None if none has. */
    function componentAt(x: real, y: real): int {
        const kind = (flow.childAt(x, y) as CardPart)?.kind ?? KanbanCardFocus.None;
        switch (kind) {
        case KanbanCardFocus.NoteIcon:
        case KanbanCardFocus.Icon:
        case KanbanCardFocus.Blocked:
            return kind;
        default:
            return KanbanCardFocus.None;
        }
    }

    /** What is to be said of the part at this point. */
    function tipAt(x: real, y: real): string {
        const part = age.contains(age.mapFromItem(root, x, y)) ? age : flow.childAt(x, y) as CardPart;
        return part?.tip ?? "";
    }

    Flow {
        id: flow
        width: parent.width
        spacing: root.gap

        Repeater {
            id: parts
            model: root.card.parts
            delegate: CardPart {
                required property var modelData

                kind: modelData.kind
                zoom: root.zoom
                symbol: modelData.symbol
                text: modelData.text
                tone: modelData.tone
                tip: modelData.tip
                maximumWidth: root.width
            }
        }
    }
    CardPart {
        id: age
        x: root.width - width
        y: root.ageFits ? root.last.y : flow.height + root.gap / 2
        zoom: root.zoom
        symbol: root.card.isAging ? "clock.badge.exclamationmark.fill" : "clock"
        text: root.card.ageText
        tone: root.card.isAging ? CardTone.Aging : CardTone.Quiet
        bold: root.card.isAging
        tip: root.card.ageDescription
    }
}
