import QtQuick

/** Says that moves are being stored. Fades slowly, so that a quick save can be seen. */
Rectangle {
    id: root

    required property bool saving

    implicitWidth: row.implicitWidth + 20
    implicitHeight: row.implicitHeight + 12
    radius: height / 2
    color: Theme.note
    opacity: saving ? 0.9 : 0
    visible: opacity > 0
    Accessible.role: Accessible.StatusBar
    Accessible.name: qsTr("Saving...")

    Behavior on opacity {
        NumberAnimation { duration: root.saving ? 0 : Theme.fade }
    }

    Row {
        id: row
        anchors.centerIn: parent
        spacing: 6

        BusySpinner {
            anchors.verticalCenter: parent.verticalCenter
            size: 12
            color: Theme.inkOnNote
        }
        ThemedText {
            text: qsTr("Saving...")
            font.pixelSize: Theme.small
            color: Theme.inkOnNote
        }
    }
}
