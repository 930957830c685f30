import QtQuick
import Vantrel.ViewModels

/** One age of the histogram: its bar with how many tasks there are above, and how old they are below. */
Item {
    id: root

    required property ageBar modelData
    required property int index
    required property real highest
    required property bool isSelected

    signal toggled

    Accessible.role: Accessible.ListItem
    Accessible.name: modelData.accessibleName
    Accessible.focusable: true
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.onPressAction: root.toggled()

    Item {
        id: bar
        anchors.horizontalCenter: parent.horizontalCenter
        y: 20 + root.highest - height
        width: Math.min(120, root.width * 0.68)
        height: Math.max(2, root.highest * root.modelData.fraction)
        clip: true

        // Round at the top only: the rest of it is cut off.
        Rectangle {
            width: parent.width
            height: parent.height + radius
            radius: Math.min(6, parent.height)
            color: Theme.ageZones[root.modelData.zone]
        }
    }
    FocusRing {
        anchors.fill: bar
        radius: 8
        active: root.activeFocus || root.isSelected
    }
    ThemedText {
        anchors.horizontalCenter: bar.horizontalCenter
        anchors.bottom: bar.top
        anchors.bottomMargin: 5
        text: root.modelData.count + " · " + root.modelData.share
        color: root.isSelected ? Theme.text : Theme.secondaryText
        font.weight: root.isSelected ? Theme.headingWeight : Theme.regularWeight
        Accessible.ignored: true
    }
    ThemedText {
        anchors.horizontalCenter: bar.horizontalCenter
        y: root.highest + 27
        text: root.modelData.label
        color: root.isSelected ? Theme.text : Theme.secondaryText
        font.weight: root.isSelected ? Theme.headingWeight : Theme.regularWeight
        Accessible.ignored: true
    }
    HoverHandler {
        id: hover
        cursorShape: Qt.PointingHandCursor
    }
    TapHandler {
        onTapped: root.toggled()
    }
    HoverHint {
        shown: hover.hovered
        text: root.modelData.accessibleName
    }
}
