pragma ComponentBehavior: Bound

import QtQuick

/** The four zones of age by their colours, from young to old. */
Row {
    id: root

    required property var zones
    required property real swatch
    property string title: ""

    spacing: 16

    ThemedText {
        anchors.verticalCenter: parent.verticalCenter
        visible: root.title !== ""
        text: root.title
        font.pixelSize: Theme.small
        color: Theme.secondaryText
    }
    Repeater {
        model: root.zones

        delegate: Row {
            id: entry

            required property var modelData

            spacing: 6

            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: root.swatch
                height: root.swatch
                radius: root.swatch / 4
                color: Theme.ageZones[entry.modelData.zone]
            }
            ThemedText {
                anchors.verticalCenter: parent.verticalCenter
                text: entry.modelData.text
                font.pixelSize: root.swatch < 16 ? Theme.small : Theme.body
            }
        }
    }
}
