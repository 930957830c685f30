pragma ComponentBehavior: Bound

import QtQuick

/**
 * A month to pick a day from, and the time of that day. Arrows move by day and week, Page Up and Page Down by month.
 */
FocusScope {
    id: root

    required property string label
    required property date date

    readonly property int cellSize: 32
    readonly property int firstDayOfWeek: Qt.locale().firstDayOfWeek
    /** What the month starts with: the last days of the one before. */
    readonly property date firstShown: {
        const first = new Date(date.getFullYear(), date.getMonth(), 1);
        return new Date(date.getFullYear(), date.getMonth(), 1 - (first.getDay() - firstDayOfWeek + 7) % 7);
    }

    signal picked(date date)
    signal finished

    implicitWidth: 7 * cellSize
    implicitHeight: column.implicitHeight

    /** The same time of day, on another day. */
    function pickDay(year: int, month: int, day: int) {
        const next = new Date(date);
        next.setFullYear(year, month, day);
        picked(next);
    }
    function moveDays(days: int) {
        pickDay(date.getFullYear(), date.getMonth(), date.getDate() + days);
    }
    function moveMonths(months: int) {
        const last = new Date(date.getFullYear(), date.getMonth() + months + 1, 0).getDate();
        pickDay(date.getFullYear(), date.getMonth() + months, Math.min(date.getDate(), last));
    }
    function takeTime(text: string) {
        const time = Date.fromLocaleTimeString(Qt.locale("C"), text, "H:m");
        if (isNaN(time.getTime()))
            return;
        const next = new Date(date);
        next.setHours(time.getHours(), time.getMinutes(), 0, 0);
        picked(next);
    }

    Column {
        id: column
        spacing: Theme.gap

        Item {
            width: root.implicitWidth
            height: Theme.toolButtonSize

            ToolbarButton {
                symbol: "chevron.right"
                rotation: 180
                text: qsTr("Previous Month")
                onClicked: root.moveMonths(-1)
            }
            ThemedText {
                anchors.centerIn: parent
                text: root.date.toLocaleDateString(Qt.locale(), "MMMM yyyy")
                font.weight: Theme.headingWeight
            }
            ToolbarButton {
                anchors.right: parent.right
                symbol: "chevron.right"
                text: qsTr("Next Month")
                onClicked: root.moveMonths(1)
            }
        }
        FocusScope {
            id: days
            width: grid.width
            height: grid.height
            focus: true
            activeFocusOnTab: true
            Accessible.role: Accessible.Table
            Accessible.name: root.label + ", " + root.date.toLocaleDateString(Qt.locale(), Locale.LongFormat)
            Keys.onLeftPressed: root.moveDays(-1)
            Keys.onRightPressed: root.moveDays(1)
            Keys.onUpPressed: root.moveDays(-7)
            Keys.onDownPressed: root.moveDays(7)
            Keys.onReturnPressed: root.finished()
            Keys.onEnterPressed: root.finished()
            Keys.onSpacePressed: root.finished()
            Keys.onPressed: event => {
                event.accepted = event.key === Qt.Key_PageUp || event.key === Qt.Key_PageDown;
                if (event.accepted)
                    root.moveMonths(event.key === Qt.Key_PageUp ? -1 : 1);
            }

            Grid {
                id: grid
                columns: 7

                Repeater {
                    model: 7
                    delegate: ThemedText {
                        required property int index

                        width: root.cellSize
                        text: Qt.locale().dayName((root.firstDayOfWeek + index) % 7, Locale.NarrowFormat)
                        color: Theme.faintText
                        font.pixelSize: Theme.tiny
                        horizontalAlignment: Text.AlignHCenter
                        Accessible.ignored: true
                    }
                }
                Repeater {
                    model: 42
                    delegate: Rectangle {
                        id: cell

                        required property int index

                        readonly property date day: new Date(root.firstShown.getFullYear(),
                                                             root.firstShown.getMonth(),
                                                             root.firstShown.getDate() + index)
                        readonly property bool isPicked: day.toDateString() === root.date.toDateString()

                        width: root.cellSize
                        height: root.cellSize - 4
                        radius: Theme.chipRadius
                        color: isPicked ? Theme.accent : pointer.hovered ? Theme.hover : "transparent"
                        Accessible.role: Accessible.Cell
                        Accessible.name: day.toLocaleDateString(Qt.locale(), Locale.LongFormat)
                        Accessible.selected: isPicked
                        Accessible.onPressAction: pick()

                        function pick() {
                            root.pickDay(day.getFullYear(), day.getMonth(), day.getDate());
                        }

                        ThemedText {
                            anchors.centerIn: parent
                            text: cell.day.getDate()
                            color: cell.isPicked ? Theme.inkOnAccent
                                 : cell.day.getMonth() === root.date.getMonth() ? Theme.text : Theme.faintText
                            font.weight: cell.isPicked ? Theme.headingWeight : Theme.regularWeight
                            Accessible.ignored: true
                        }
                        HoverHandler { id: pointer }
                        TapHandler { onTapped: cell.pick() }
                    }
                }
            }
            FocusRing {
                active: days.activeFocus
            }
        }
        Row {
            spacing: Theme.gap

            ThemedText {
                anchors.verticalCenter: parent.verticalCenter
                text: qsTr("Time")
                color: Theme.secondaryText
            }
            AppTextField {
                implicitWidth: 72
                text: root.date.toLocaleTimeString(Qt.locale("C"), "HH:mm")
                inputMethodHints: Qt.ImhTime
                validator: RegularExpressionValidator { regularExpression: /([01]?\d|2[0-3]):[0-5]?\d/ }
                Accessible.name: qsTr("Time")
                onEditingFinished: root.takeTime(text)
                onAccepted: root.finished()
            }
        }
    }
}
