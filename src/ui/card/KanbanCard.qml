pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** One task as a card. What it shows is ready made; what the pointer does goes out as signals. */
Item {
    id: root

    required property cardContent card
    property bool isSelected: false
    /** The keyboard is on this card, and another mark has to tell so. */
    property bool showsFocus: false
    property int focusedComponent: KanbanCardFocus.None
    property string operationError: ""
    property bool hovered: false
    property bool lifted: false
    property real zoom: 1
    /** How far the card steps back behind the others, from 0 to 1. */
    property real veil: 0

    readonly property real padding: Theme.cardPadding * zoom
    readonly property bool showsMetadata: zoom >= 0.6
    readonly property color ground: card.isBlocked ? Theme.redTint : hovered ? Theme.cardHover : Theme.card
    readonly property color edge: isSelected ? Theme.accent : card.isBlocked ? Theme.redLine : Theme.line

    signal retryRequested

    implicitHeight: content.height + 2 * padding
    Accessible.role: Accessible.ListItem
    Accessible.name: card.title
    Accessible.description: operationError === "" ? card.accessibleDescription
                                                  : operationError + ". " + card.accessibleDescription
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.focusable: true

    /** The item of a part; the card itself for None. */
    function partFor(component: int): Item {
        switch (component) {
        case KanbanCardFocus.None: return root;
        case KanbanCardFocus.Name: return title;
        case KanbanCardFocus.Project: return project;
        default: return metadata.partFor(component);
        }
    }

    /** Which part at this point has more to tell, None if none has. */
    function componentAt(x: real, y: real): int {
        const place = metadata.mapFromItem(root, x, y);
        return metadata.visible ? metadata.componentAt(place.x, place.y) : KanbanCardFocus.None;
    }

    /** What is to be said of the part of the card at this point. */
    function tipAt(x: real, y: real): string {
        if (failure.active && failure.contains(failure.mapFromItem(root, x, y)))
            return qsTr("%1\nClick to try again.").arg(operationError);
        const inMetadata = metadata.mapFromItem(root, x, y);
        return metadata.visible && metadata.contains(inMetadata) ? metadata.tipAt(inMetadata.x, inMetadata.y)
                                                                 : title.truncated ? card.title : "";
    }

    Rectangle {
        x: root.lifted ? -1 : 0
        y: root.lifted ? 5 : 1.5
        width: parent.width - 2 * x
        height: parent.height
        radius: frame.radius
        color: root.lifted ? Theme.liftedShadow : Theme.shadow
    }
    // The stripe of a flagged card is what the frame leaves uncovered at the left.
    Rectangle {
        width: 3 * radius
        height: parent.height
        visible: root.card.hasFlagStripe
        radius: frame.radius
        color: Theme.flagStripe
    }
    Rectangle {
        id: frame
        anchors.fill: parent
        anchors.leftMargin: root.card.hasFlagStripe && !root.isSelected ? 3 : 0
        radius: Theme.cardRadius * root.zoom
        color: root.ground
        border.width: root.isSelected ? Theme.ringWidth : 1
        border.color: root.edge

        Behavior on color {
            ColorAnimation { duration: Theme.quick }
        }
    }

    Column {
        id: content
        x: root.padding + (root.card.hasFlagStripe ? 2 : 0)
        y: root.padding
        width: root.width - x - root.padding
        spacing: 5 * root.zoom

        ThemedText {
            id: title
            width: parent.width - (failure.active ? failure.width : 0)
            text: root.card.title
            color: root.card.isComplete ? Theme.faintText : Theme.text
            font.pixelSize: Theme.body * root.zoom
            font.weight: Theme.titleWeight
            font.strikeout: root.card.isComplete
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        CardPart {
            id: project
            visible: root.card.project !== ""
            zoom: root.zoom
            symbol: "folder"
            text: root.card.project
            maximumWidth: parent.width
        }
        KanbanCardMetadata {
            id: metadata
            width: parent.width
            visible: root.showsMetadata
            card: root.card
            zoom: root.zoom
        }
    }

    // Not by opacity: through a translucent card its own parts would be seen.
    Rectangle {
        anchors.fill: parent
        anchors.margins: -1
        anchors.bottomMargin: -3
        visible: opacity > 0
        opacity: root.veil
        color: Theme.cell

        Behavior on opacity {
            NumberAnimation { duration: Theme.quick }
        }
    }
    Lazy {
        id: failure
        active: root.operationError !== ""
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 7 * root.zoom
        sourceComponent: ToolbarButton {
            implicitWidth: 22 * root.zoom
            implicitHeight: 22 * root.zoom
            symbol: "exclamationmark.triangle.fill"
            ink: Theme.red
            text: qsTr("Retry")
            // The card's own hint tells why, too.
            hint: ""
            onClicked: root.retryRequested()
        }
    }
    Lazy {
        readonly property Item part: root.partFor(root.focusedComponent)
        readonly property bool isOnPart: part !== root
        readonly property rect place: active && part ? root.mapFromItem(part, 0, 0, part.width, part.height) : Qt.rect(0, 0, 0, 0)

        x: place.x
        y: place.y
        width: place.width
        height: place.height
        z: 10
        active: root.showsFocus || isOnPart
        sourceComponent: FocusRing {
            active: true
            radius: root.focusedComponent === KanbanCardFocus.None ? frame.radius + 3 : Theme.chipRadius + 2
        }
    }
}
