import QtQuick
import Vantrel.ViewModels

/** A row of a cell: a card, the pointer's and the keyboard's way to it, and the gap that may open above it. */
Item {
    id: root

    required property int index
    required property cardContent card
    required property bool isSelected
    required property bool isFocused
    required property int focusedComponent
    required property bool isDimmed
    required property bool isDragged
    required property string operationError
    required property CellModel cell
    required property columnContent column
    required property BoardLayout frame
    required property real landingHeight

    readonly property BoardViewModel board: frame.board
    readonly property alias cardItem: item
    /** A copy of the card is on its way here. */
    property bool isInFlight: false
    readonly property bool isTarget: landingHeight > 0
    property real landing: isTarget && cell.dropRow === index ? landingHeight + frame.cardGap : 0
    /** Over its own cell the dragged card leaves its place: the gap tells where it will stand. */
    readonly property bool isTakenOut: isDragged && isTarget

    /** It stands elsewhere in the cell than before. */
    signal placed

    height: landing + (isTakenOut ? 0 : item.height + frame.cardGap)

    Behavior on landing {
        enabled: !root.frame.drag.hasDropped
        NumberAnimation { duration: Theme.quick; easing.type: Easing.OutCubic }
    }

    // Rows slide by themselves when others come or go before them: what a view does for that gives them places that go
    // stale as soon as a row changes its height.
    transform: Translate { id: shift }
    property real placeBefore: 0
    property bool isDisplaced: false

    onIndexChanged: {
        placeBefore = y + shift.y;
        isDisplaced = true;
    }
    onYChanged: {
        placed();
        if (!isDisplaced)
            return;
        isDisplaced = false;
        sliding.from = placeBefore - y;
        sliding.restart();
    }
    NumberAnimation {
        id: sliding
        target: shift
        property: "y"
        to: 0
        duration: Theme.move
        easing.type: Easing.OutCubic
    }

    function takeFocus() {
        if (!isFocused || !frame.hasFocus)
            return;
        item.forceActiveFocus(Qt.OtherFocusReason);
        frame.revealRequested(item);
    }

    function come() {
        frame.flights.arrive(root);
        takeFocus();
        placed();
    }

    onIsFocusedChanged: takeFocus()
    onIsDraggedChanged: if (!isDragged && frame.drag.placesBelow > 0) frame.flights.fall(root, frame.drag.place)
    onIsInFlightChanged: if (isInFlight) appearing.complete()
    ListView.onAdd: {
        frame.flights.arrive(root);
        if (!isInFlight)
            appearing.restart();
    }
    ListView.onRemove: frame.flights.depart(root)
    Component.onCompleted: {
        isDisplaced = false;
        come();
    }
    ListView.onReused: {
        sliding.stop();
        shift.y = 0;
        isDisplaced = false;
        visible = true;
        opacity = 1;
        come();
    }
    ListView.onPooled: {
        if (item.activeFocus)
            frame.focusRequested();
        frame.flights.land(card.id);
        // The view only leaves it undrawn: to a screen reader it would still be there.
        visible = false;
    }

    NumberAnimation {
        id: appearing
        target: root
        property: "opacity"
        from: 0
        to: 1
        duration: Theme.move
    }
    KanbanCard {
        id: item
        objectName: "column-" + root.column.name + "-task-" + root.card.id
        x: root.frame.cellPadding
        y: root.landing
        width: root.width - 2 * x
        height: implicitHeight
        opacity: root.isInFlight || root.isTakenOut ? 0 : 1
        veil: root.isDragged ? 0.65 : root.isDimmed ? 0.75 : 0
        card: root.card
        isSelected: root.isSelected
        showsFocus: activeFocus && root.focusedComponent === KanbanCardFocus.None
                    && (!root.isSelected || root.board.selectedCount > 1)
        focusedComponent: root.focusedComponent
        operationError: root.operationError
        hovered: hover.hovered
        zoom: root.frame.zoom
        Accessible.ignored: !root.visible
        Accessible.onPressAction: root.board.tapCard(root.card.id, false)
        onRetryRequested: root.board.retry(root.card.id)

        HoverHandler {
            id: hover
            readonly property string tip: hovered ? item.tipAt(point.position.x, point.position.y) : ""
        }
        TapHandler {
            acceptedButtons: Qt.LeftButton | Qt.RightButton
            onDoubleTapped: (eventPoint, button) => {
                if (button === Qt.RightButton)
                    return;
                const name = item.partFor(KanbanCardFocus.Name);
                if (name.contains(name.mapFromItem(item, eventPoint.position)))
                    root.board.nameEditor.begin(root.card.id);
            }
            onTapped: (eventPoint, button) => {
                if (button === Qt.RightButton) {
                    root.frame.contextMenuRequested(root.card.id, item.mapToItem(null, eventPoint.position));
                    return;
                }
                const isToggle = point.modifiers & Qt.ControlModifier;
                root.frame.focusRequested();
                root.board.tapCard(root.card.id, isToggle);
                if (!isToggle)
                    root.board.popover.open(root.card.id,
                                            item.componentAt(eventPoint.position.x, eventPoint.position.y));
            }
        }
        DragHandler {
            id: drag
            target: null
            acceptedDevices: PointerDevice.Mouse | PointerDevice.Stylus
            onActiveChanged: {
                if (active)
                    root.frame.drag.begin(item, drag);
                else
                    root.frame.drag.end();
            }
        }
        HoverHint {
            shown: hover.tip !== "" && root.board.popover.kind === CardPopover.None
            text: hover.tip
        }
    }
}
