pragma ComponentBehavior: Bound

import QtQuick

/**
 * Cards on their way from one cell to another, or from the pointer to their place. Each cell is a view of its own, in
 * which a card that comes or goes could only fade; here a copy of it slides over the board, and the card itself waits
 * unseen until the copy has come.
 */
Item {
    id: root

    /** More at once are not followed by the eye, and cost time. */
    readonly property int most: 12

    // A row is a ColumnTask: the type cannot be named here, as it knows this one.

    /** By task id: the flights, and which rows left or came while the views were brought up to date. */
    property var flights: ({})
    property var departed: ({})
    property var arrived: ({})

    /** A row is about to leave its view. */
    function depart(row: var) {
        if (Theme.move === 0)
            return;
        const id = row.card.id;
        departed[id] = {row: row, place: flights[id]?.place ?? placeOf(row)};
        land(id);
        memory.restart();
        cross(id);
    }
    /** A row has come into its view, or begins to be seen there. */
    function arrive(row: var) {
        if (Theme.move === 0 || arrived[row.card.id] === row)
            return;
        arrived[row.card.id] = row;
        memory.restart();
        cross(row.card.id);
    }
    /** Lets a card that the pointer has let go slide to its place, or back if it has found none. */
    function fall(row: var, from: rect) {
        // Where it belongs is known in the next turn only; until then it stays where it was let go.
        fly(row, from, 60);
    }
    function fly(row: var, from: rect, pause: int) {
        const id = row.card.id;
        land(id);
        if (Theme.move === 0 || Object.keys(flights).length >= most)
            return;
        flights[id] = flight.createObject(root, {row: row, card: row.card, from: from, pause: pause, zoom: row.frame.zoom});
        row.isInFlight = true;
    }
    /** Ends a flight, wherever it is. */
    function land(id: string) {
        const landing = flights[id];
        if (!landing)
            return;
        delete flights[id];
        if (landing.row)
            landing.row.isInFlight = false;
        landing.destroy();
    }

    function cross(id: string) {
        const departure = departed[id];
        const row = arrived[id];
        if (!departure?.row || row?.card.id !== id)
            return;
        if (Object.keys(flights).length < most)
            departure.row.visible = false;
        fly(row, departure.place, 0);
    }
    function placeOf(row: var): rect {
        return row.cardItem.mapToItem(root, 0, 0, row.cardItem.width, row.cardItem.height);
    }

    // The views of the two cells need not be brought up to date in the same turn.
    Timer {
        id: memory
        interval: 60
        onTriggered: {
            root.departed = {};
            root.arrived = {};
        }
    }
    Component {
        id: flight

        KanbanCard {
            id: copy

            required property var row
            required property rect from

            readonly property rect place: Qt.rect(x, y, width, height)
            readonly property rect to: {
                progress;
                return row ? root.placeOf(row) : from;
            }
            property real progress: 0
            property int pause: 0

            x: from.x + (to.x - from.x) * progress
            y: from.y + (to.y - from.y) * progress
            width: to.width
            height: to.height
            isSelected: row?.isSelected ?? false
            lifted: true

            SequentialAnimation {
                running: true
                onFinished: root.land(copy.card.id)

                PauseAnimation { duration: copy.pause }
                NumberAnimation {
                    target: copy
                    property: "progress"
                    to: 1
                    duration: Theme.move
                    easing.type: Easing.OutCubic
                }
            }
        }
    }
}
