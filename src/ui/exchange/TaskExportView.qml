pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Vantrel.ViewModels

/** Tasks as text: which, in which form, and what that looks like. */
SheetFrame {
    id: root

    required property TaskExportViewModel exporter

    title: qsTr("Export Tasks")
    contentWidth: 560
    closable: true
    onDismissed: exporter.close()
    onConfirmed: if (exporter.hasText) exporter.copyToClipboard()
    Component.onCompleted: scopePicker.forceActiveFocus()

    Row {
        width: parent?.width ?? 0
        spacing: Theme.laneGap

        LabeledField {
            width: (parent.width - parent.spacing) / 2
            text: qsTr("What to export:")

            AppComboBox {
                id: scopePicker
                objectName: "exportScopePicker"
                width: parent?.width ?? 0
                label: qsTr("Export Scope")
                model: root.exporter.scopes
                currentIndex: root.exporter.selectedScope
                onActivated: index => root.exporter.selectScope(index)
            }
        }
        LabeledField {
            width: (parent.width - parent.spacing) / 2
            text: qsTr("Export format:")

            AppComboBox {
                objectName: "exportFormatPicker"
                width: parent?.width ?? 0
                label: qsTr("Export Format")
                model: root.exporter.formats
                currentIndex: root.exporter.selectedFormat
                onActivated: index => root.exporter.selectFormat(index)
            }
        }
    }
    LabeledField {
        visible: root.exporter.asksForColumn
        text: qsTr("Select column:")

        AppComboBox {
            objectName: "exportColumnPicker"
            width: parent?.width ?? 0
            label: qsTr("Column")
            model: root.exporter.columns
            currentIndex: root.exporter.selectedColumn
            onActivated: index => root.exporter.selectColumn(index)
        }
    }
    LabeledField {
        visible: root.exporter.asksForSwimLane
        text: qsTr("Select swimlane:")

        AppComboBox {
            width: parent?.width ?? 0
            label: qsTr("Swimlane")
            model: root.exporter.swimLanes
            currentIndex: root.exporter.selectedSwimLane
            onActivated: index => root.exporter.selectSwimLane(index)
        }
    }
    LabeledField {
        text: qsTr("Preview:")

        Rectangle {
            width: parent?.width ?? 0
            height: 240
            radius: Theme.controlRadius
            color: Theme.field
            border.width: preview.activeFocus ? Theme.ringWidth : 1
            border.color: preview.activeFocus ? Theme.accent : Theme.strongLine

            ListView {
                id: preview
                objectName: "exportPreview"
                anchors.fill: parent
                anchors.margins: Theme.gap
                clip: true
                activeFocusOnTab: true
                boundsBehavior: Flickable.StopAtBounds
                model: root.exporter.previewLines
                Accessible.role: Accessible.List
                Accessible.name: qsTr("Preview")
                Keys.onUpPressed: scrollBar.decrease()
                Keys.onDownPressed: scrollBar.increase()
                T.ScrollBar.vertical: AppScrollBar { id: scrollBar }

                delegate: ThemedText {
                    required property string modelData

                    width: ListView.view.width - Theme.laneGap
                    text: modelData
                    color: root.exporter.hasText ? Theme.text : Theme.faintText
                    wrapMode: Text.Wrap
                    bottomPadding: 3
                    Accessible.role: Accessible.ListItem
                    Accessible.name: modelData
                }
            }
        }
    }
    ThemedText {
        width: parent?.width ?? 0
        visible: text !== ""
        text: root.exporter.errorMessage
        color: Theme.redText
        font.pixelSize: Theme.small
        wrapMode: Text.Wrap
    }
    Item {
        width: parent?.width ?? 0
        height: Theme.controlHeight

        AppButton {
            text: qsTr("Refresh")
            symbol: "arrow.clockwise"
            onClicked: root.exporter.refresh()
        }
        Row {
            anchors.right: parent.right
            spacing: Theme.gap

            AppButton {
                text: qsTr("Cancel")
                onClicked: root.dismissed()
            }
            AppButton {
                objectName: "copyExportButton"
                text: qsTr("Copy to Clipboard")
                highlighted: true
                enabled: root.exporter.hasText
                onClicked: root.exporter.copyToClipboard()
            }
        }
    }
}
