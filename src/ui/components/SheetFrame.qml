pragma ComponentBehavior: Bound

import QtQuick

/**
 * A card in the middle of the dimmed window, for a question or a form. The window behind takes no pointer and no key
 * while it stands. Escape asks to leave; Ctrl+Return does what the sheet is for, wherever in it the keyboard is; a click
 * outside does nothing, so that a stray click loses nothing typed.
 */
FocusScope {
    id: root

    property real contentWidth: 500
    property string title: ""
    property string subtitle: ""
    /** Shows a button in the corner that asks to leave. */
    property bool closable: false
    default property alias content: column.data

    signal dismissed
    signal confirmed

    anchors.fill: parent
    z: 100
    focus: true
    Accessible.role: Accessible.Dialog
    Accessible.name: title
    Keys.onEscapePressed: dismissed()

    Shortcut {
        sequences: ["Ctrl+Return", "Ctrl+Enter"]
        onActivated: root.confirmed()
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.scrim

        MouseArea {
            anchors.fill: parent
            hoverEnabled: true
            acceptedButtons: Qt.AllButtons
            onWheel: wheel => wheel.accepted = true
        }
    }
    SoftShadow {
        anchors.fill: sheet
        radius: sheet.radius
        depth: 16
    }
    Rectangle {
        id: sheet
        anchors.centerIn: parent
        width: Math.min(root.contentWidth + 2 * Theme.sheetPadding, root.width - 40)
        height: Math.min(column.implicitHeight + 2 * Theme.sheetPadding, root.height - 40)
        radius: Theme.windowPartRadius
        color: Theme.surface
        border.width: 1
        border.color: Theme.line

        Flickable {
            anchors.fill: parent
            contentHeight: column.height + 2 * Theme.sheetPadding
            interactive: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
            clip: interactive

            Column {
                id: column
                x: Theme.sheetPadding
                y: Theme.sheetPadding
                width: parent.width - 2 * Theme.sheetPadding
                spacing: Theme.laneGap

                ThemedText {
                    width: parent.width
                    visible: root.title !== ""
                    text: root.title
                    font.pixelSize: Theme.large
                    font.weight: Theme.headingWeight
                    elide: Text.ElideRight
                }
                ThemedText {
                    width: parent.width
                    visible: root.subtitle !== ""
                    text: root.subtitle
                    color: Theme.secondaryText
                    wrapMode: Text.Wrap
                }
            }
        }
    }
    Lazy {
        active: root.closable
        anchors.right: sheet.right
        anchors.top: sheet.top
        anchors.margins: Theme.laneGap
        sourceComponent: ToolbarButton {
            objectName: "closeButton"
            symbol: "xmark"
            symbolSize: Theme.smallIconSize
            text: qsTr("Close")
            onClicked: root.dismissed()
        }
    }
    NumberAnimation on opacity {
        from: 0
        to: 1
        duration: Theme.quick
        running: true
    }
}
