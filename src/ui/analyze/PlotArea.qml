pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/**
 * A chart over time: title, axes and grid, and the period that the pointer or the keyboard is on. What stands in it
 * comes from whoever uses it: `picture` for all periods at once, `markDelegate` for each.
 */
FocusScope {
    id: root

    required property string title
    /** The chart in one sentence, for those who do not see it. */
    required property string summary
    required property string help
    /** Of throughputMark. */
    required property var marks
    required property var axisLabels
    required property countScale scale
    /** The first and the last mark stand half a pitch from the edges, as columns need it. */
    property bool isInset: false
    property Component picture: null
    property Component markDelegate: null
    property alias headerContent: header.data

    readonly property int count: marks.length
    readonly property real plotWidth: plot.width
    readonly property real plotHeight: plot.height
    readonly property real pitch: plotWidth / Math.max(1, isInset ? count : count - 1)
    readonly property bool isDense: pitch < 14
    /** The mark under the pointer, else the one that has the keyboard; -1 for none. */
    readonly property int current: hover.index >= 0 ? hover.index : keyboardIndex
    property int keyboardIndex: -1

    function xOf(index: int): real {
        return isInset ? (index + 0.5) * pitch : index * pitch;
    }
    function yOf(tasks: int): real {
        return plotHeight * (1 - tasks / scale.maximum);
    }
    function indexAt(x: real): int {
        const index = isInset ? Math.floor(x / pitch) : Math.round(x / pitch);
        return Math.max(0, Math.min(count - 1, index));
    }
    function moveTo(index: int) {
        keyboardIndex = Math.max(0, Math.min(count - 1, index));
        repeater.itemAt(keyboardIndex)?.forceActiveFocus(Qt.TabFocusReason);
    }

    activeFocusOnTab: true
    Accessible.role: Accessible.Chart
    Accessible.name: title
    Accessible.description: summary + " " + help
    Accessible.focusable: true
    onActiveFocusChanged: if (!activeFocus) keyboardIndex = -1
    onMarksChanged: keyboardIndex = -1
    Keys.onLeftPressed: moveTo(keyboardIndex < 0 ? count - 1 : keyboardIndex - 1)
    Keys.onRightPressed: moveTo(keyboardIndex + 1)
    Keys.onPressed: event => {
        if (event.key !== Qt.Key_Home && event.key !== Qt.Key_End)
            return;
        moveTo(event.key === Qt.Key_Home ? 0 : count - 1);
        event.accepted = true;
    }
    Keys.onEscapePressed: event => {
        const mark = repeater.itemAt(keyboardIndex);
        event.accepted = mark !== null;
        if (mark)
            mark.focus = false;
        keyboardIndex = -1;
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
        Accessible.role: Accessible.Heading
        Accessible.name: text

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
        }
        ThemedText {
            anchors.horizontalCenter: parent.horizontalCenter
            y: plot.height + 32
            text: qsTr("Time")
            font.pixelSize: Theme.tiny
            color: Theme.faintText
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
            model: root.axisLabels

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
        Repeater {
            id: repeater
            model: root.marks
            delegate: root.markDelegate
        }
        HoverHandler {
            id: hover
            readonly property int index: hovered && root.count > 0 ? root.indexAt(point.position.x) : -1
        }
        TapHandler {
            onTapped: eventPoint => root.moveTo(root.indexAt(eventPoint.position.x))
        }
        PlotTip {
            // A PlotMark; naming its type here would make a circle of types.
            readonly property var mark: root.current >= 0 ? repeater.itemAt(root.current) : null

            plot: plot
            pointX: mark ? root.xOf(mark.index) : 0
            pointY: mark?.peakY ?? 0
            text: mark?.tip ?? ""
            moment: mark?.modelData.moment ?? ""
        }
    }
}
