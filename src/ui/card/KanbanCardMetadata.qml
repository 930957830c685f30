pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** The last rows of a card: what the task is, in symbols and chips, and its age at the right end. */
Item {
    id: root

    required property cardContent card
    property real zoom: 1

    readonly property real gap: 6 * zoom
    // By what the card says, not by what is visible: the height must not change with that of the card itself.
    readonly property Item last: card.dueText !== "" ? due : card.tag !== "" ? tag : card.isBlocked ? blocked
        : card.recurrenceIcon !== "" ? recurrence : card.isFlagged ? flag : card.note !== "" ? note
        : card.priorityIcon !== "" ? priority : source
    readonly property bool ageFits: last.x + last.width + gap + age.width <= width

    implicitHeight: ageFits ? flow.height : flow.height + gap / 2 + age.height

    /** The item of a part, or null if that is not here. */
    function partFor(component: int): Item {
        switch (component) {
        case KanbanCardFocus.NoteIcon: return note;
        case KanbanCardFocus.Icon: return source;
        case KanbanCardFocus.Blocked: return blocked;
        case KanbanCardFocus.Tag: return tag;
        case KanbanCardFocus.DueDate: return due;
        case KanbanCardFocus.Age: return age;
        default: return null;
        }
    }

    /** Which part at this point has more to tell, None if none has. */
    function componentAt(x: real, y: real): int {
        const part = flow.childAt(x, y);
        return part === note ? KanbanCardFocus.NoteIcon : part === source ? KanbanCardFocus.Icon
             : part === blocked ? KanbanCardFocus.Blocked : KanbanCardFocus.None;
    }

    /** What is to be said of the part at this point. */
    function tipAt(x: real, y: real): string {
        const part = age.contains(age.mapFromItem(root, x, y)) ? age : flow.childAt(x, y);
        return part?.tip ?? "";
    }

    /** Most cards have few of these, and a board has many cards: each is made only where it is. */
    component RarePart: Lazy {
        readonly property string tip: (item as CardPart)?.tip ?? ""
        visible: active
    }

    Flow {
        id: flow
        width: parent.width
        spacing: root.gap

        CardPart {
            id: source
            zoom: root.zoom
            symbol: root.card.sourceIcon
            ink: Theme.faintText
            tip: root.card.sourceText
        }
        RarePart {
            id: priority
            active: root.card.priorityIcon !== ""
            sourceComponent: CardPart {
                zoom: root.zoom
                symbol: root.card.priorityIcon
                ink: Theme.redText
                tip: root.card.priorityText
            }
        }
        RarePart {
            id: note
            active: root.card.note !== ""
            sourceComponent: CardPart {
                zoom: root.zoom
                symbol: "note"
                ink: Theme.faintText
                tip: root.card.note
            }
        }
        RarePart {
            id: flag
            active: root.card.isFlagged
            sourceComponent: CardPart {
                zoom: root.zoom
                symbol: "flag"
                ink: Theme.flagStripe
                tip: qsTr("Flagged")
            }
        }
        RarePart {
            id: recurrence
            active: root.card.recurrenceIcon !== ""
            sourceComponent: CardPart {
                zoom: root.zoom
                symbol: root.card.recurrenceIcon
                ink: Theme.faintText
                tip: root.card.recurrenceText
            }
        }
        RarePart {
            id: blocked
            active: root.card.isBlocked
            sourceComponent: CardPart {
                zoom: root.zoom
                symbol: "exclamationmark.triangle"
                text: root.card.blockedText
                ink: Theme.redText
                maximumWidth: root.width
                tip: qsTr("Blocked task. Click to see or add reason.")
            }
        }
        CardPart {
            id: tag
            visible: root.card.tag !== ""
            zoom: root.zoom
            text: root.card.tag
            ink: Theme.violetText
            tint: Theme.violetTint
            maximumWidth: root.width
        }
        CardPart {
            id: due
            readonly property var look: ({
                [DueState.Overdue]: [Theme.redText, Theme.redTint],
                [DueState.Soon]: [Theme.amberText, Theme.amberTint],
                [DueState.Later]: [Theme.greenText, Theme.greenTint]
            })[root.card.dueState] ?? [Theme.faintText, Theme.cell]

            visible: root.card.dueText !== ""
            zoom: root.zoom
            symbol: "calendar.badge.clock"
            text: root.card.dueText
            ink: look[0]
            tint: look[1]
            tip: root.card.dueDescription
        }
    }
    CardPart {
        id: age
        x: root.width - width
        y: root.ageFits ? root.last.y : flow.height + root.gap / 2
        zoom: root.zoom
        symbol: root.card.isAging ? "clock.badge.exclamationmark.fill" : "clock"
        text: root.card.ageText
        ink: root.card.isAging ? Theme.amberText : Theme.faintText
        bold: root.card.isAging
        tip: root.card.ageDescription
    }
}
