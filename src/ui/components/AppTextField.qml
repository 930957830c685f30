import QtQuick
import QtQuick.Templates as T

/** One line of text to type into. */
T.TextField {
    id: root

    implicitWidth: 240
    implicitHeight: Theme.controlHeight
    leftPadding: 10
    rightPadding: 10
    verticalAlignment: TextInput.AlignVCenter
    color: Theme.text
    placeholderTextColor: Theme.faintText
    selectionColor: Theme.accent
    selectedTextColor: Theme.inkOnAccent
    selectByMouse: true
    font.family: Theme.fontFamily
    font.pixelSize: Theme.body
    Accessible.name: placeholderText

    ThemedText {
        x: root.leftPadding
        y: root.topPadding
        width: root.width - root.leftPadding - root.rightPadding
        height: root.height - root.topPadding - root.bottomPadding
        visible: root.length === 0 && root.preeditText === ""
        text: root.placeholderText
        font: root.font
        color: root.placeholderTextColor
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.field
        border.width: root.activeFocus ? Theme.ringWidth : 1
        border.color: root.activeFocus ? Theme.accent : Theme.strongLine
    }
}
