pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** A row of the age grid. */
Item {
    id: root

    required property var cards
    required property int firstIndex
    required property real rowHeight
    required property OptimizeViewModel optimize
    required property real cardWidth
    required property real gap
    required property bool hasKeyboard

    property ageCard noCard

    signal tapped

    height: rowHeight + gap
    ListView.onPooled: visible = false
    ListView.onReused: visible = true

    Repeater {
        model: root.optimize.grid.columns

        delegate: TaskAgeCard {
            required property int index

            readonly property int place: root.firstIndex + index
            // Not `visible`: that still changes when the row is on its way out.
            readonly property bool isThere: index < root.cards.length

            x: Theme.windowPadding + index * (root.cardWidth + root.gap)
            width: root.cardWidth
            visible: isThere
            card: isThere ? root.cards[index] : root.noCard
            isSelected: isThere && root.optimize.selectedTaskId === card.id
            showsFocus: root.hasKeyboard && !isSelected && root.optimize.currentIndex === place
            onTapped: {
                root.tapped();
                root.optimize.toggleTaskSelection(place);
            }
        }
    }
}
