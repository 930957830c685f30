import QtQuick

/** What the chart says of one period, beside its point and within the plot. */
Rectangle {
    id: root

    required property Item plot
    required property real pointX
    required property real pointY
    required property string text
    required property string moment

    readonly property real distance: 10
    readonly property bool isLeft: pointX + distance + width > plot.width + 40

    visible: text !== ""
    x: isLeft ? pointX - distance - width : pointX + distance
    y: Math.max(-8, Math.min(plot.height - height, pointY + 4))
    z: 5
    width: column.implicitWidth + 2 * Theme.cardPadding
    height: column.implicitHeight + 12
    radius: Theme.controlRadius
    color: Theme.surface
    border.width: 1
    border.color: Theme.strongLine

    Column {
        id: column
        x: Theme.cardPadding
        y: 6
        spacing: 2

        ThemedText {
            text: root.text
            font.pixelSize: Theme.small
            font.weight: Theme.headingWeight
            Accessible.ignored: true
        }
        ThemedText {
            text: root.moment
            font.pixelSize: Theme.tiny
            color: Theme.secondaryText
            Accessible.ignored: true
        }
    }
}
