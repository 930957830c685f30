pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/**
 * What hangs on the pointer while cards are dragged: the lifted card, the others as a stack behind it, and how many
 * there are. Drawn in the window, as not every desktop can draw a picture that lets its ground shine through.
 */
Item {
    id: root

    required property BoardViewModel board

    readonly property bool active: proxy.Drag.active
    /** The gap that dragged cards need. */
    readonly property real landingHeight: picture.size.height
    /** Where the lifted card is, in this item. */
    readonly property rect place: Qt.rect(picture.x, picture.y, picture.size.width, picture.size.height)

    /** What was dragged has been dropped: gaps close at once, as the cards themselves fill them. */
    property bool hasDropped: false
    /** Places that the pointer is over while it drags; none outside of the board. */
    property int placesBelow: 0

    /** Lifts the card if `pointer` still holds it when that can begin. */
    function begin(card: KanbanCard, pointer: DragHandler) {
        lifting.card = card;
        lifting.grip = card.mapFromItem(null, pointer.centroid.scenePressPosition);
        lifting.pointer = pointer;
        // A handler also takes a pointer that was pressed elsewhere and comes over its card.
        if (card.contains(lifting.grip))
            lifting.restart();
    }
    function lift(card: KanbanCard, grip: point) {
        placesBelow = 0;
        hasDropped = false;
        picture.zoom = card.zoom;
        picture.size = Qt.size(card.width, card.height);
        picture.grip = grip;
        picture.count = board.draggedTaskCount(card.card.id);
        picture.card = card.card;
        moveTo(card.mapToItem(null, grip));
        proxy.Drag.mimeData = board.beginDrag(card.card.id);
        proxy.Drag.active = true;
    }
    function end() {
        proxy.Drag.active = false;
    }
    function moveTo(scenePosition: point) {
        const here = mapFromItem(null, scenePosition);
        picture.x = here.x - picture.grip.x;
        picture.y = here.y - picture.grip.y;
    }

    // Not before the present event is through: a drag runs an event loop of its own.
    Timer {
        id: lifting

        property KanbanCard card: null
        property point grip
        property DragHandler pointer: null

        interval: 0
        onTriggered: if (card && pointer.active) root.lift(card, grip)
    }
    Item {
        id: proxy
        Drag.dragType: Drag.Automatic
        Drag.supportedActions: Qt.MoveAction
        Drag.proposedAction: Qt.MoveAction
        Drag.onDragFinished: root.board.endDrag()
    }

    Item {
        id: picture

        property cardContent card
        property size size
        property point grip
        property real zoom: 1
        property int count: 0

        width: size.width
        height: size.height
        visible: root.active && root.placesBelow > 0
        opacity: 0.9
        scale: 1.02

        Repeater {
            model: Math.max(0, Math.min(2, picture.count - 1))

            Rectangle {
                required property int index

                readonly property real offset: 5 * picture.zoom * (index + 1)

                z: -1 - index
                x: offset
                y: offset
                width: picture.width
                height: picture.height
                radius: Theme.cardRadius * picture.zoom
                color: Theme.card
                border.width: 1
                border.color: Theme.strongLine
            }
        }
        Lazy {
            anchors.fill: parent
            active: picture.visible
            sourceComponent: KanbanCard {
                lifted: true
                zoom: picture.zoom
                card: picture.card
            }
        }
        Pill {
            visible: picture.count > 1
            anchors.horizontalCenter: parent.right
            anchors.verticalCenter: parent.top
            text: picture.count
            font.weight: Theme.headingWeight
            color: Theme.accent
            textColor: Theme.inkOnAccent
        }
    }
}
