import QtQuick

/** What an empty cell says. */
ThemedText {
    property real zoom: 1

    width: Math.min(implicitWidth, parent.width - Theme.gap * 2)
    color: Theme.faintText
    font.pixelSize: Theme.small * zoom
    horizontalAlignment: Text.AlignHCenter
    wrapMode: Text.Wrap
}
