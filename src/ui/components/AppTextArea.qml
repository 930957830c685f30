pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

/** Many lines of text to type or paste into; scrolls within itself. Tab leaves it, as any field. */
T.ScrollView {
    id: root

    property alias text: area.text
    property alias placeholderText: area.placeholderText
    property string label: ""
    property string description: ""

    signal edited(string text)

    function focusText() {
        area.forceActiveFocus();
    }

    implicitWidth: 240
    implicitHeight: 200
    Accessible.ignored: true

    T.ScrollBar.vertical: AppScrollBar {
        parent: root
        x: root.width - width - 2
        y: 2
        height: root.height - 4
    }

    T.TextArea {
        id: area
        focus: true
        leftPadding: 10
        rightPadding: 14
        topPadding: 8
        bottomPadding: 8
        color: Theme.text
        selectionColor: Theme.accent
        selectedTextColor: Theme.inkOnAccent
        selectByMouse: true
        wrapMode: TextEdit.Wrap
        textFormat: TextEdit.PlainText
        font.family: Theme.fontFamily
        font.pixelSize: Theme.body
        Accessible.name: root.label
        Accessible.description: root.description
        Keys.onTabPressed: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)
        Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
        onTextChanged: root.edited(text)
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.field
        border.width: area.activeFocus ? Theme.ringWidth : 1
        border.color: area.activeFocus ? Theme.accent : Theme.strongLine
    }
}
