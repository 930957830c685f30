pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Vantrel.ViewModels

/**
 * The cards of the tasks, oldest first, the older the higher. Only the rows that are seen are made, whatever the number
 * of tasks. What is put into it stands above the cards and scrolls with them.
 */
FocusScope {
    id: root

    required property OptimizeViewModel optimize
    default property alias headerContent: column.data

    // What scrolls away at the top would lie above the toolbar.
    clip: true

    readonly property real gap: Theme.laneGap
    readonly property real innerWidth: width - 2 * Theme.windowPadding
    readonly property bool isCompact: width < 560
    readonly property real leastCardWidth: isCompact ? 140 : 160
    readonly property real greatestCardWidth: isCompact ? 200 : 240
    readonly property int columns: Math.max(1, Math.floor((innerWidth + gap) / (leastCardWidth + gap)))
    readonly property real cardWidth: Math.min(greatestCardWidth, Math.floor((innerWidth + gap) / columns - gap))

    Binding {
        target: root.optimize.grid
        property: "columns"
        value: root.columns
    }

    // Before the cards for the keyboard, and above them for the eye.
    FocusScope {
        id: header
        x: Theme.windowPadding
        y: list.originY - height - root.gap - list.contentY
        z: 1
        width: root.innerWidth
        height: column.height
        focus: true
        onActiveFocusChanged: if (activeFocus) scroll.glideTo(scroll.first)

        Column {
            id: column
            width: parent.width
            spacing: Theme.laneGap
            topPadding: Theme.windowPadding
        }
    }
    ListView {
        id: list

        function reveal() {
            const row = Math.floor(root.optimize.currentIndex / root.columns);
            if (activeFocus && row >= 0)
                positionViewAtIndex(row, ListView.Contain);
        }

        objectName: "ageGrid"
        anchors.fill: parent
        topMargin: header.height + root.gap
        bottomMargin: Theme.windowPadding - root.gap
        interactive: false
        reuseItems: true
        cacheBuffer: 300
        clip: true
        activeFocusOnTab: true
        model: root.optimize.grid
        // The view model knows where the keyboard is: no row is to take the focus from the list.
        currentIndex: -1
        T.ScrollBar.vertical: AppScrollBar {}
        Accessible.role: Accessible.List
        Accessible.name: qsTr("Tasks by Age: %1 tasks").arg(root.optimize.grid.cardCount)
        Accessible.focusable: true
        Keys.onPressed: event => event.accepted = event.modifiers === Qt.NoModifier && root.optimize.handleKey(event.key)
        // What stands above the cards has grown or shrunk: a view that shows it goes on showing all of it.
        onTopMarginChanged: {
            if (contentY > originY)
                return;
            scroll.stop();
            contentY = originY - topMargin;
        }

        WheelScroll {
            id: scroll
            flickable: list
        }
        Connections {
            target: root.optimize

            function onSelectionChanged() {
                list.reveal();
            }
        }
        delegate: TaskAgeRow {
            width: list.width
            optimize: root.optimize
            cardWidth: root.cardWidth
            gap: root.gap
            hasKeyboard: list.activeFocus
            onTapped: list.forceActiveFocus(Qt.MouseFocusReason)
        }
    }
    ThemedText {
        anchors.horizontalCenter: parent.horizontalCenter
        y: header.y + header.height + 40
        visible: list.count === 0
        text: qsTr("No tasks to display")
        color: Theme.secondaryText
    }
}
