pragma ComponentBehavior: Bound

import QtQuick

/** Average, peak and total, side by side. */
Column {
    id: root

    required property var cards

    spacing: Theme.gap

    ThemedText {
        text: qsTr("Key Metrics")
        font.weight: Theme.headingWeight
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    Row {
        id: row
        width: parent.width
        spacing: Theme.laneGap

        Repeater {
            model: root.cards

            delegate: MetricCard {
                required property var modelData

                width: (row.width - 2 * row.spacing) / 3
                symbol: modelData.symbol
                title: modelData.title
                value: modelData.value
                caption: modelData.caption
                Accessible.name: modelData.accessibleName
            }
        }
    }
}
