pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/**
 * A chart over time: title, axes and grid, and the period that the pointer or the keyboard is on. Whoever uses it draws
 * `picture` into it, for all periods at once: there may be hundreds.
 */
FocusScope {
    id: root

    required property string title
    /** The chart in one sentence, for those who do not see it. */
    required property string summary
    required property string help
    required property throughputChartData chart
    required property countScale scale
    /** Columns stand side by side, the outer ones half a pitch from the edges; points reach from edge to edge. */
    required property bool hasColumns
    /** Where the highest point of a mark is. */
    required property real currentPeak
    /** What the hint beside the mark says. */
    required property string tip
    property Component picture: null
    property alias headerContent: header.data

    readonly property int count: chart.count
    readonly property real plotWidth: plot.width
    readonly property real plotHeight: plot.height
    readonly property real pitch: plotWidth / Math.max(1, hasColumns ? count : count - 1)
    /** Too many periods for each to be told from the next. */
    readonly property bool isDense: pitch < 14
    /** Where the pointer or the keyboard is, whichever moved last; -1 for nowhere. */
    property int current: -1
    readonly property throughputMark currentMark: chart.mark(current)
    property int keyboardIndex: -1

    function xOf(index: int): real {
        return hasColumns ? (index + 0.5) * pitch : index * pitch;
    }
    function yOf(tasks: int): real {
        return plotHeight * (1 - tasks / scale.maximum);
    }
    function indexAt(x: real): int {
        const index = hasColumns ? Math.floor(x / pitch) : Math.round(x / pitch);
        return Math.max(0, Math.min(count - 1, index));
    }
    function moveTo(index: int) {
        keyboardIndex = Math.max(0, Math.min(count - 1, index));
        current = keyboardIndex;
        marks.itemAt(keyboardIndex)?.forceActiveFocus(Qt.TabFocusReason);
    }
    function leave() {
        keyboardIndex = -1;
        current = -1;
    }

    activeFocusOnTab: true
    Accessible.role: Accessible.Chart
    Accessible.name: title
    Accessible.description: summary + " " + help
    Accessible.focusable: true
    onActiveFocusChanged: if (!activeFocus) leave()
    onChartChanged: leave()
    Keys.onLeftPressed: moveTo(keyboardIndex < 0 ? count - 1 : keyboardIndex - 1)
    Keys.onRightPressed: moveTo(keyboardIndex + 1)
    Keys.onPressed: event => {
        if (event.key !== Qt.Key_Home && event.key !== Qt.Key_End)
            return;
        moveTo(event.key === Qt.Key_Home ? 0 : count - 1);
        event.accepted = true;
    }
    Keys.onEscapePressed: event => {
        const mark = marks.itemAt(keyboardIndex);
        event.accepted = mark !== null;
        if (mark)
            mark.focus = false;
        leave();
    }

    FocusRing {
        anchors.margins: 3
        radius: Theme.windowPartRadius - 3
        active: root.activeFocus
    }
    ThemedText {
        id: heading
        x: 16
        y: 18
        text: root.title
        font.weight: Theme.headingWeight
        // The chart has this name.
        Accessible.ignored: true

        HoverHandler {
            id: headingHover
        }
        HoverHint {
            shown: headingHover.hovered
            text: root.help
        }
    }
    Item {
        id: header
        anchors.right: parent.right
        anchors.rightMargin: 24
        anchors.verticalCenter: heading.verticalCenter
        implicitWidth: childrenRect.width
        implicitHeight: childrenRect.height
    }

    Item {
        id: plot
        x: 66
        y: 78
        width: root.width - x - 62
        height: root.height - y - 60

        ThemedText {
            x: 16 - plot.x
            y: -34
            text: qsTr("Completed")
            font.pixelSize: Theme.tiny
            color: Theme.faintText
            Accessible.ignored: true
        }
        ThemedText {
            anchors.horizontalCenter: parent.horizontalCenter
            y: plot.height + 32
            text: qsTr("Time")
            font.pixelSize: Theme.tiny
            color: Theme.faintText
            Accessible.ignored: true
        }

        Repeater {
            model: root.scale.steps + 1

            delegate: Rectangle {
                id: line

                required property int index

                readonly property int tasks: index * root.scale.step

                y: Math.round(root.yOf(tasks))
                width: plot.width
                height: 1
                color: index === 0 ? Theme.strongLine : Theme.line

                ThemedText {
                    anchors.right: parent.left
                    anchors.rightMargin: 12
                    anchors.verticalCenter: parent.verticalCenter
                    text: line.tasks
                    font.pixelSize: Theme.tiny
                    color: Theme.faintText
                    Accessible.ignored: true
                }
            }
        }
        Repeater {
            model: root.chart.axisLabels

            delegate: ThemedText {
                required property var modelData

                x: root.xOf(modelData.index) - width / 2
                y: plot.height + 10
                text: modelData.text
                font.pixelSize: Theme.tiny
                color: Theme.faintText
                Accessible.ignored: true
            }
        }
        Rectangle {
            visible: root.current >= 0
            x: Math.round(root.xOf(root.current))
            y: -8
            width: 1
            height: plot.height + 8
            color: Theme.strongLine
        }
        Lazy {
            anchors.fill: parent
            active: root.picture !== null
            sourceComponent: root.picture
        }
        // The periods as the screen reader and the keyboard find them. Bare, as there may be hundreds.
        Repeater {
            id: marks
            model: root.count

            delegate: Item {
                required property int index

                x: root.xOf(index) - root.pitch / 2
                width: root.pitch
                height: plot.height
                Accessible.role: Accessible.Graphic
                Accessible.name: root.chart.spokenMark(index, root.hasColumns)
                Accessible.focusable: true
            }
        }
        HoverHandler {
            property int index: hovered && root.count > 0 ? root.indexAt(point.position.x) : -1

            onIndexChanged: root.current = index >= 0 ? index : root.keyboardIndex
        }
        TapHandler {
            onTapped: eventPoint => root.moveTo(root.indexAt(eventPoint.position.x))
        }
        PlotTip {
            plot: plot
            pointX: root.xOf(root.current)
            pointY: root.currentPeak
            text: root.current >= 0 ? root.tip : ""
            moment: root.currentMark.moment
        }
    }
}
