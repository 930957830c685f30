pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** What hangs on the pointer while cards are dragged: the lifted card, and how many there are. */
Item {
    id: root

    required property BoardViewModel board

    readonly property bool active: proxy.Drag.active
    /** The gap that dragged cards need. */
    property real landingHeight: 72

    /** Lifts the card; `isHeld` tells whether the pointer still holds it when its picture is ready. */
    function begin(card: KanbanCard, grip: point, isHeld: var) {
        landingHeight = card.height;
        picture.source = card;
        picture.grabToImage(result => {
            if (!isHeld())
                return;
            proxy.Drag.mimeData = root.board.beginDrag(card.card.id);
            proxy.Drag.imageSource = result.url;
            proxy.Drag.hotSpot = Qt.point(grip.x + picture.margin, grip.y + picture.margin);
            proxy.Drag.active = true;
        });
    }
    function end() {
        proxy.Drag.active = false;
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

        property KanbanCard source: null
        readonly property real margin: 12
        readonly property int count: source ? root.board.draggedTaskCount(source.card.id) : 0

        x: -10000
        width: (source?.width ?? 0) * 1.02 + 2 * margin
        height: (source?.height ?? 0) * 1.02 + 2 * margin
        opacity: 0.9

        Lazy {
            x: picture.margin
            y: picture.margin
            active: picture.source !== null
            sourceComponent: KanbanCard {
                width: picture.source.width
                height: picture.source.height
                transformOrigin: Item.TopLeft
                scale: 1.02
                lifted: true
                zoom: picture.source.zoom
                card: picture.source.card
            }
        }
        Pill {
            visible: picture.count > 1
            anchors.right: parent.right
            anchors.top: parent.top
            anchors.margins: 2
            text: picture.count
            font.weight: Theme.headingWeight
            color: Theme.accent
            textColor: Theme.inkOnAccent
        }
    }
}
