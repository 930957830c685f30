import QtQuick
import Vantrel.ViewModels

/** What all parts of the board share: its view model, its sizes at the present zoom, and what is dragged. */
QtObject {
    id: root

    required property BoardViewModel board
    required property CardDrag drag
    required property CardFlights flights
    readonly property WheelTurn wheelTurn: WheelTurn {}
    /** Space for the columns, without the window's padding. */
    required property real availableWidth
    required property int columnCount
    /** The keyboard is on the board. */
    required property bool hasFocus

    readonly property real zoom: board.zoomLevel
    readonly property real windowPadding: Theme.windowPadding
    /** Between a swimlane's edge and its cells. */
    readonly property real inset: Theme.cardPadding + 1
    readonly property real columnGap: Theme.laneGap * zoom
    readonly property real cellPadding: Theme.gap * zoom
    readonly property real cardGap: Theme.gap * zoom
    readonly property real headerHeight: board.columnHeaderHeight * zoom
    readonly property real columnWidth: Math.max(
        Theme.minimumColumnWidth * zoom,
        (availableWidth - 2 * inset - (columnCount - 1) * columnGap) / Math.max(1, columnCount))
    readonly property real boardWidth: columnCount * (columnWidth + columnGap) - columnGap + 2 * inset

    /** A card has the focus and wants to be seen. */
    signal revealRequested(card: Item)
    /** The pointer has used the board: the keyboard follows. */
    signal focusRequested
    /** The pointer asks for the menu of a card, at this place of the scene. */
    signal contextMenuRequested(taskId: string, scenePosition: point)
    /** The card of a task that has just been completed, wherever it is, celebrates. */
    signal celebrated(taskId: string, type: int)
    /** Something is dragged over a cell, at this place of the scene. */
    signal draggedOver(scenePosition: point)
}
