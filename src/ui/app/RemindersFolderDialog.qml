import QtQuick.Dialogs

/** The desktop's own dialog, or Qt's, in which the folder of the reminders is chosen. Made when it is wanted. */
FolderDialog {
    title: qsTr("Choose the folder of your task lists")
    acceptLabel: qsTr("Choose")
}
