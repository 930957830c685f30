import QtQuick

/** A piece of a column: solid for OmniFocus, outlined for Reminders, so that shape tells them apart too. */
Rectangle {
    property bool isOutlined: false

    radius: width < 8 ? 0 : 3
    color: isOutlined ? Theme.remindersWash : Theme.omniFocus
    border.width: isOutlined ? Math.min(2, width / 2) : 0
    border.color: Theme.reminders
}
