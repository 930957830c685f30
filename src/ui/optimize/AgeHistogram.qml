pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** How many tasks are how old: a bar for each age, that can be selected. */
FocusScope {
    id: root

    required property OptimizeViewModel optimize

    readonly property real highestBar: 162

    implicitHeight: 302
    focus: true

    Panel {
        anchors.fill: parent
    }

    ThemedText {
        id: heading
        x: 16
        y: 18
        text: qsTr("Task Age Distribution")
        font.weight: Theme.headingWeight
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    ThemedText {
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.left: heading.right
        anchors.leftMargin: 16
        anchors.verticalCenter: heading.verticalCenter
        horizontalAlignment: Text.AlignRight
        text: root.optimize.selectedBucketText
        color: Theme.secondaryText
        elide: Text.ElideRight
    }

    FocusScope {
        id: chart

        property int focusedBucket: Math.max(0, root.optimize.selectedBucket)

        function moveTo(row: int) {
            const bar = repeater.itemAt(Math.max(0, Math.min(repeater.count - 1, row)));
            bar?.forceActiveFocus(Qt.TabFocusReason);
        }

        objectName: "ageHistogram"
        x: 16
        y: 48
        width: root.width - 2 * x
        height: root.highestBar + 46
        focus: true
        activeFocusOnTab: true
        Accessible.role: Accessible.Chart
        Accessible.name: qsTr("Task Age Distribution Chart")
        onActiveFocusChanged: if (activeFocus) moveTo(focusedBucket)
        Keys.onLeftPressed: moveTo(focusedBucket - 1)
        Keys.onRightPressed: moveTo(focusedBucket + 1)
        Keys.onSpacePressed: root.optimize.toggleBucket(focusedBucket)
        Keys.onReturnPressed: root.optimize.toggleBucket(focusedBucket)
        Keys.onEnterPressed: root.optimize.toggleBucket(focusedBucket)

        Row {
            id: row
            height: parent.height

            Repeater {
                id: repeater
                model: root.optimize.bars
                onItemAdded: index => {
                    if (chart.activeFocus && index === chart.focusedBucket)
                        chart.moveTo(index);
                }

                delegate: AgeHistogramBar {
                    width: chart.width / repeater.count
                    height: row.height
                    highest: root.highestBar
                    isSelected: root.optimize.selectedBucket === index
                    onActiveFocusChanged: if (activeFocus) chart.focusedBucket = index
                    onToggled: {
                        forceActiveFocus(Qt.MouseFocusReason);
                        root.optimize.toggleBucket(index);
                    }
                }
            }
        }
    }
    ZoneLegend {
        anchors.horizontalCenter: parent.horizontalCenter
        y: chart.y + chart.height + 10
        zones: root.optimize.zones
        swatch: 16
    }
}
