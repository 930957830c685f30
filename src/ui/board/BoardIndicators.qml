pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** Says above the board that it does not show everything, and gives the way back. */
Flow {
    id: root

    required property BoardViewModel board

    readonly property bool wanted: root.board.isolationTitle !== "" || root.board.activeTagFilters.length > 0

    padding: wanted ? Theme.gap : 0
    leftPadding: Theme.windowPadding
    rightPadding: Theme.windowPadding
    bottomPadding: 0
    spacing: Theme.gap

    ChipButton {
        visible: root.board.isolationTitle !== ""
        symbol: "eye.circle.fill"
        text: root.board.isolationTitle
        hint: qsTr("Click to exit swimlane focus mode and show all swimlanes")
        closable: true
        onClicked: root.board.clearIsolation()
    }
    Repeater {
        model: root.board.activeTagFilters

        ChipButton {
            required property var modelData

            text: modelData.name
            symbol: "tag"
            hint: qsTr("Remove tag filter")
            closable: true
            onClicked: root.board.removeTagFilter(modelData.id)
        }
    }
    ChipButton {
        visible: root.board.activeTagFilters.length > 0
        text: qsTr("Clear")
        hint: qsTr("Clear all tag filters")
        onClicked: root.board.clearTagFilters()
    }
}
