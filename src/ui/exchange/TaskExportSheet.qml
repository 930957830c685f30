pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** The export, and above it the word that it is done. */
Item {
    id: root

    required property TaskExportViewModel exporter

    Lazy {
        anchors.fill: parent
        active: !root.exporter.showSuccess
        sourceComponent: TaskExportView {
            objectName: "taskExportView"
            exporter: root.exporter
        }
    }
    Lazy {
        anchors.fill: parent
        active: root.exporter.showSuccess
        sourceComponent: NoticeSheet {
            title: qsTr("Copied to Clipboard")
            message: qsTr("The tasks have been copied to the clipboard in the selected format.")
            onDismissed: root.exporter.acknowledge()
        }
    }
}
