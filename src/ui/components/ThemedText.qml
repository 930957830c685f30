import QtQuick

/** Text in the interface's type. */
Text {
    color: Theme.text
    font.family: Theme.fontFamily
    font.pixelSize: Theme.body
    textFormat: Text.PlainText
    renderType: Text.QtRendering
}
