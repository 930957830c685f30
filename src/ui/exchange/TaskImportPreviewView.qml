pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Vantrel.ViewModels

/** What a pasted list will become, and where it will go. */
SheetFrame {
    id: root

    required property TaskImportViewModel importer

    title: qsTr("Import Tasks")
    contentWidth: 560
    closable: true
    onDismissed: importer.close()
    onConfirmed: importer.importTasks()
    Component.onCompleted: importButton.forceActiveFocus()

    Row {
        spacing: Theme.gap

        Repeater {
            model: root.importer.counts
            delegate: Pill {
                required property string modelData

                text: modelData
                textColor: Theme.secondaryText
                border.width: 1
                border.color: Theme.line
            }
        }
    }
    ThemedText {
        objectName: "limitWarning"
        width: parent?.width ?? 0
        visible: text !== ""
        text: root.importer.limitWarning
        color: Theme.amberText
        font.pixelSize: Theme.small
        wrapMode: Text.Wrap
    }
    Rectangle {
        width: parent?.width ?? 0
        height: Math.min(260, Math.max(60, list.contentHeight + 2 * Theme.gap))
        radius: Theme.controlRadius
        color: Theme.field
        border.width: list.activeFocus ? Theme.ringWidth : 1
        border.color: list.activeFocus ? Theme.accent : Theme.strongLine

        ListView {
            id: list
            objectName: "importPreview"
            anchors.fill: parent
            anchors.margins: Theme.gap
            clip: true
            activeFocusOnTab: true
            boundsBehavior: Flickable.StopAtBounds
            model: root.importer.tasks
            Accessible.role: Accessible.List
            Accessible.name: root.importer.counts[0]
            Keys.onUpPressed: scrollBar.decrease()
            Keys.onDownPressed: scrollBar.increase()
            T.ScrollBar.vertical: AppScrollBar { id: scrollBar }

            delegate: Item {
                id: row

                required property var modelData

                width: ListView.view.width - Theme.laneGap
                height: 28
                Accessible.role: Accessible.ListItem
                Accessible.name: modelData.text
                Accessible.description: modelData.hashtags.join(", ")

                SymbolImage {
                    id: box
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: row.modelData.symbol
                    size: Theme.iconSize
                    color: row.modelData.isCompleted ? Theme.green : Theme.secondaryText
                }
                ThemedText {
                    anchors.left: box.right
                    anchors.leftMargin: Theme.gap
                    anchors.right: tags.left
                    anchors.rightMargin: Theme.gap
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.modelData.text
                    color: row.modelData.isCompleted ? Theme.faintText : Theme.text
                    font.strikeout: row.modelData.isCompleted
                    elide: Text.ElideRight
                }
                Row {
                    id: tags
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    spacing: Theme.unit

                    Repeater {
                        model: row.modelData.hashtags
                        delegate: Pill {
                            required property string modelData

                            radius: Theme.chipRadius
                            horizontalPadding: 6
                            text: "#" + modelData
                            textColor: Theme.violetText
                            color: Theme.violetTint
                        }
                    }
                }
            }
        }
    }
    ThemedText {
        text: qsTr("Import options")
        font.weight: Theme.headingWeight
    }
    Row {
        width: parent?.width ?? 0
        spacing: Theme.laneGap

        LabeledField {
            width: (parent.width - parent.spacing) / 2
            text: qsTr("Column:")

            AppComboBox {
                objectName: "importColumnPicker"
                width: parent?.width ?? 0
                label: qsTr("Column:")
                model: root.importer.columns
                currentIndex: root.importer.selectedColumn
                onActivated: index => root.importer.selectedColumn = index
            }
        }
        LabeledField {
            width: (parent.width - parent.spacing) / 2
            text: qsTr("Swimlane:")

            AppComboBox {
                objectName: "importSwimLanePicker"
                width: parent?.width ?? 0
                label: qsTr("Swimlane:")
                model: root.importer.swimLanes
                currentIndex: root.importer.selectedSwimLane
                onActivated: index => root.importer.selectedSwimLane = index
            }
        }
    }
    ThemedText {
        width: parent?.width ?? 0
        visible: text !== ""
        text: root.importer.errorMessage
        color: Theme.redText
        font.pixelSize: Theme.small
        wrapMode: Text.Wrap
    }
    Item {
        width: parent?.width ?? 0
        height: Theme.controlHeight

        AppButton {
            text: qsTr("Back to Edit")
            onClicked: root.importer.backToEdit()
        }
        Row {
            anchors.right: parent.right
            spacing: Theme.gap

            AppButton {
                text: qsTr("Cancel")
                onClicked: root.dismissed()
            }
            AppButton {
                id: importButton
                objectName: "importButton"
                text: root.importer.importText
                highlighted: true
                enabled: root.importer.tasks.length > 0
                onClicked: root.importer.importTasks()
            }
        }
    }
}
