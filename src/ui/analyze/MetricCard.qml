import QtQuick

/** One figure: what it is, how much, and of what. */
Panel {
    id: root

    required property string symbol
    required property string title
    required property string value
    required property string caption

    readonly property bool hasRoom: width > 190

    implicitHeight: 78
    Accessible.role: Accessible.StaticText

    Rectangle {
        id: badge
        x: 16
        anchors.verticalCenter: parent.verticalCenter
        visible: root.hasRoom
        width: 38
        height: 38
        radius: Theme.controlRadius
        color: Theme.accentTint

        SymbolImage {
            anchors.centerIn: parent
            symbol: root.symbol
            color: Theme.accent
        }
    }
    Column {
        x: root.hasRoom ? badge.x + badge.width + Theme.laneGap : 16
        anchors.verticalCenter: parent.verticalCenter
        width: root.width - x - Theme.laneGap

        ThemedText {
            text: root.title
            color: Theme.secondaryText
            Accessible.ignored: true
        }
        ThemedText {
            text: root.value
            font.pixelSize: Theme.figure
            font.weight: Theme.headingWeight
            Accessible.ignored: true
        }
    }
    ThemedText {
        anchors.right: parent.right
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        visible: root.width > 240
        text: root.caption
        color: Theme.secondaryText
        Accessible.ignored: true
    }
}
