pragma ComponentBehavior: Bound

import QtQuick
import Vantrel.ViewModels

/** The import in its two faces, then the word that it is done. */
Item {
    id: root

    required property TaskImportViewModel importer

    readonly property bool isDone: importer.confirmation !== ""

    Lazy {
        anchors.fill: parent
        active: !root.importer.isPreviewMode
        sourceComponent: TaskImportInputView {
            objectName: "taskImportInputView"
            importer: root.importer
        }
    }
    Lazy {
        anchors.fill: parent
        active: root.importer.isPreviewMode && !root.isDone
        sourceComponent: TaskImportPreviewView {
            objectName: "taskImportPreviewView"
            importer: root.importer
        }
    }
    Lazy {
        anchors.fill: parent
        active: root.importer.isPreviewMode && root.isDone
        sourceComponent: NoticeSheet {
            title: qsTr("Tasks Imported")
            message: root.importer.confirmation
            onDismissed: root.importer.close()
        }
    }
}
