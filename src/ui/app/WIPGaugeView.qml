import QtQuick
import Vantrel.ViewModels

/** How much is in progress, against the user's own limit. */
Item {
    id: root

    required property WIPGaugeViewModel gauge

    implicitWidth: 224
    implicitHeight: 20
    Accessible.role: Accessible.ProgressBar
    Accessible.name: gauge.accessibleName
    Accessible.description: gauge.accessibleDescription

    Text {
        anchors.verticalCenter: parent.verticalCenter
        text: root.gauge.emoji
        font.family: Theme.emojiFamily
        font.pixelSize: Theme.medium
        Accessible.ignored: true
    }
    Rectangle {
        id: bar
        x: 24
        width: 200
        height: 20
        radius: 10
        color: Theme.gaugeGround

        Rectangle {
            width: Math.max(height, parent.width * root.gauge.progress)
            height: parent.height
            radius: 10
            color: root.gauge.color
            visible: root.gauge.progress > 0

            Behavior on width {
                NumberAnimation { duration: Theme.move; easing.type: Easing.OutCubic }
            }
            Behavior on color {
                ColorAnimation { duration: Theme.move }
            }
        }
        ThemedText {
            anchors.centerIn: parent
            anchors.horizontalCenterOffset: 1
            anchors.verticalCenterOffset: 1
            text: root.gauge.text
            font.pixelSize: Theme.small
            font.weight: Theme.titleWeight
            color: Theme.gaugeTextShadow
            Accessible.ignored: true
        }
        ThemedText {
            anchors.centerIn: parent
            text: root.gauge.text
            font.pixelSize: Theme.small
            font.weight: Theme.titleWeight
            color: Theme.gaugeText
            Accessible.ignored: true
        }
        SequentialAnimation on scale {
            running: root.gauge.overloaded && !Theme.reducedMotion && root.visible
            loops: Animation.Infinite
            alwaysRunToEnd: true

            NumberAnimation { to: 1.03; duration: 800; easing.type: Easing.InOutQuad }
            NumberAnimation { to: 1; duration: 800; easing.type: Easing.InOutQuad }
        }
    }
    HoverHandler { id: hover }
    HoverHint {
        shown: hover.hovered
        text: root.gauge.description
    }
}
