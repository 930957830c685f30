import QtQuick

/** A quiet ground for something that belongs together. */
Rectangle {
    radius: Theme.windowPartRadius
    color: Theme.surface
    border.width: 1
    border.color: Theme.line
}
