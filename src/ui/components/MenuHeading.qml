import QtQuick
import QtQuick.Templates as T

/** What a menu is about, above its commands. */
T.MenuItem {
    id: root

    implicitWidth: leftPadding + label.implicitWidth + rightPadding
    implicitHeight: Theme.menuItemHeight
    leftPadding: 8
    rightPadding: 10
    enabled: false
    Accessible.role: Accessible.Heading
    Accessible.name: text

    contentItem: ThemedText {
        id: label
        verticalAlignment: Text.AlignVCenter
        text: root.text
        color: Theme.secondaryText
        font.pixelSize: Theme.small
        font.weight: Theme.headingWeight
    }
}
